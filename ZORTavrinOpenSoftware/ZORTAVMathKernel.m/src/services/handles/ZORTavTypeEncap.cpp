// SPDX-License-Identifier: MIT
#include "ZORTavTypeEncap.h"

#include <cstdlib>
#include <cstring>

#include "ZORMemory.h"
#include "ZORRuntime.h"
#include "services/leave_behind.h"

namespace {

// A copy in storage of its own, null for a null text. `holder` names the pointer that is to hold it, should there be no
// storage.
char* copy_of(const char* text, const char* holder, int line) {
  if (text == nullptr) {
    return nullptr;
  }
  const std::size_t size = std::strlen(text) + 1;
  void* copy = ZORUnsecuredMemAlloc(size);
  if (copy == nullptr) {
    ZORFatalError(holder, "ZORTavTypeEncap", line);
  }
  return static_cast<char*>(std::memcpy(copy, text, size));
}

}  // namespace

ZORTavTypeEncap::ZORTavTypeEncap() : Value{}, Tag(ZORTavValueLast) {
  Value.Slot = 0;
}

ZORTavTypeEncap::ZORTavTypeEncap(int value) : ZORTavTypeEncap() {
  Value.Integer = value;
  Tag = ZORTavValueInteger4;
}

ZORTavTypeEncap::ZORTavTypeEncap(float value) : ZORTavTypeEncap() {
  Value.Real4 = value;
  Tag = ZORTavValueReal4;
}

ZORTavTypeEncap::ZORTavTypeEncap(double value) : ZORTavTypeEncap() {
  Value.Real8 = value;
  Tag = ZORTavValueReal8;
}

ZORTavTypeEncap::ZORTavTypeEncap(const char* text) : ZORTavTypeEncap() {
  Value.Text = copy_of(text, "AssertionFailed:_Value._Ptr", __LINE__);
  Tag = ZORTavValueString;
}

ZORTavTypeEncap::ZORTavTypeEncap(int*& pointer) : ZORTavTypeEncap() {
  Value.PointerAt = static_cast<void*>(&pointer);
  Tag = ZORTavValueInteger4Ptr;
}

ZORTavTypeEncap::ZORTavTypeEncap(float*& pointer) : ZORTavTypeEncap() {
  Value.PointerAt = static_cast<void*>(&pointer);
  Tag = ZORTavValueReal4Ptr;
}

ZORTavTypeEncap::ZORTavTypeEncap(double*& pointer) : ZORTavTypeEncap() {
  Value.PointerAt = static_cast<void*>(&pointer);
  Tag = ZORTavValueReal8Ptr;
}

ZORTavTypeEncap::ZORTavTypeEncap(char*& pointer) : ZORTavTypeEncap() {
  Value.PointerAt = static_cast<void*>(&pointer);
  Tag = ZORTavValueChar1Ptr;
}

ZORTavTypeEncap::ZORTavTypeEncap(char**& pointer) : ZORTavTypeEncap() {
  Value.PointerAt = static_cast<void*>(&pointer);
  Tag = ZORTavValueChar1PtrPtr;
}

ZORTavTypeEncap::ZORTavTypeEncap(const ZORTavTypeEncap& other) : ZORTavTypeEncap() {
  *this = other;
}

// The source's value is taken before the own text is released: a handle may be assigned what its own text came from.
ZORTavTypeEncap& ZORTavTypeEncap::operator=(const ZORTavTypeEncap& other) {
  if (this == &other) {
    return *this;
  }
  auto content = Value;
  switch (other.Tag) {
    case ZORTavValueInteger4:
    case ZORTavValueReal4:
      content.Integer = other.Value.Integer;
      break;
    case ZORTavValueString:
      content.Text = copy_of(other.Value.Text, "AssertionFailed:copiedContent._Ptr", __LINE__);
      break;
    default:
      content.Slot = other.Value.Slot;
  }
  if (Tag == ZORTavValueString) {
    std::free(Value.Text);
  }
  Value = content;
  Tag = other.Tag;
  return *this;
}

ZORTavTypeEncap::~ZORTavTypeEncap() {
  if (Tag == ZORTavValueString) {
    std::free(Value.Text);
  }
  zortav::leave_behind(Value.Slot, int64_t{0});
  zortav::leave_behind(Tag, ZORTavValueLast);
}

bool ZORTavTypeEncap::IsEmpty() const {
  switch (Tag) {
    case ZORTavValueInteger4:
    case ZORTavValueReal4:
    case ZORTavValueReal8:
    case ZORTavValueInteger4Ptr:
    case ZORTavValueReal4Ptr:
    case ZORTavValueReal8Ptr:
    case ZORTavValueChar1Ptr:
    case ZORTavValueChar1PtrPtr:
      return false;
    case ZORTavValueString:
      return Value.Text == nullptr;
    default:
      return true;
  }
}

void ZORTavTypeEncap::Dump() const {}

void ZORTavTypeEncap::PrintValue() const {}
