// SPDX-License-Identifier: MIT
#include "ZORMetaClass.h"

#include <cstring>

ZORMetaClass::ZORMetaClass(const char* name, const ZORMetaClass* base, const char* interface_name,
                           const char* framework) noexcept
    : name_(name), base_(base), interface_name_(interface_name), framework_(framework) {}

const char* ZORMetaClass::GetName() const noexcept {
  return name_;
}

const ZORMetaClass* ZORMetaClass::GetBase() const noexcept {
  return base_;
}

const char* ZORMetaClass::GetInterfaceName() const noexcept {
  return interface_name_;
}

const char* ZORMetaClass::GetFramework() const noexcept {
  return framework_;
}

bool ZORMetaClass::IsAKindOf(const char* class_name) const noexcept {
  for (const ZORMetaClass* c = this; c != nullptr && class_name != nullptr; c = c->base_) {
    if (std::strcmp(c->name_, class_name) == 0) {
      return true;
    }
  }
  return false;
}
