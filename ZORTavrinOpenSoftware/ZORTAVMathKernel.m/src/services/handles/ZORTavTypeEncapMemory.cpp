// SPDX-License-Identifier: MIT
#include "ZORTavTypeEncapMemory.h"

ZORTavTypeEncapMemory::ZORTavTypeEncapMemory() = default;

ZORTavTypeEncapMemory::ZORTavTypeEncapMemory(int*& pointer) : ZORTavTypeEncap(pointer) {}

ZORTavTypeEncapMemory::ZORTavTypeEncapMemory(float*& pointer) : ZORTavTypeEncap(pointer) {}

ZORTavTypeEncapMemory::ZORTavTypeEncapMemory(double*& pointer) : ZORTavTypeEncap(pointer) {}

ZORTavTypeEncapMemory::ZORTavTypeEncapMemory(char*& pointer) : ZORTavTypeEncap(pointer) {}

ZORTavTypeEncapMemory::ZORTavTypeEncapMemory(char**& pointer) : ZORTavTypeEncap(pointer) {}

ZORTavTypeEncapMemory::ZORTavTypeEncapMemory(const ZORTavTypeEncapMemory& other) = default;

ZORTavTypeEncapMemory& ZORTavTypeEncapMemory::operator=(const ZORTavTypeEncapMemory& other) = default;

ZORTavTypeEncapMemory::~ZORTavTypeEncapMemory() = default;

ZORTavTypeEncapMemory::operator char**() const {
  return static_cast<char**>(Value.PointerAt);
}

int ZORTavTypeEncapMemory::GetTavrinSizeOfPointedType() const {
  return GetTavrinSizeOf(GetPointedType(Tag));
}
