// SPDX-License-Identifier: MIT
#include "ZORBaseObject.h"

ZORBaseObject::ZORBaseObject() noexcept : references_(1), implementation_(nullptr) {}

ZORBaseObject::ZORBaseObject(const ZORBaseObject&) noexcept : ZORBaseObject() {}

// Lifetime belongs to the object, not to what it tells. NOLINTNEXTLINE(bugprone-unhandled-self-assignment)
ZORBaseObject& ZORBaseObject::operator=(const ZORBaseObject&) noexcept {
  return *this;
}

int32_t ZORBaseObject::QueryInterface(const ZORUuid&, void** result) {
  *result = nullptr;
  return ZORStatusNoInterface;
}

uint32_t ZORBaseObject::AddRef() {
  return ++references_;
}

uint32_t ZORBaseObject::Release() {
  const uint32_t left = --references_;
  if (left == 0) {
    delete this;
  }
  return left;
}

int32_t ZORBaseObject::GetTypeInfoCount(uint32_t* count) {
  *count = 0;
  return 0;
}

int32_t ZORBaseObject::GetTypeInfo(uint32_t, uint32_t, void** information) {
  *information = nullptr;
  return ZORStatusNotOffered;
}

int32_t ZORBaseObject::GetIDsOfNames(const ZORUuid&, const char* const*, uint32_t, uint32_t, int32_t*) {
  return ZORStatusNotOffered;
}

int32_t ZORBaseObject::Invoke(int32_t, const ZORUuid&, uint32_t, uint16_t, void*, void*, void*, uint32_t*) {
  return ZORStatusNotOffered;
}

int32_t ZORBaseObject::QueryInterface(const char* class_name, void** result) {
  *result = nullptr;
  if (IsAKindOf(class_name) == 0) {
    return ZORStatusNoInterface;
  }
  AddRef();
  *result = this;
  return 0;
}

ZORBaseObject::~ZORBaseObject() = default;

const ZORMetaClass* ZORBaseObject::GetMetaObject() const {
  return MetaObject();
}

const char* ZORBaseObject::IsA() const {
  return ClassName();
}

int32_t ZORBaseObject::IsAKindOf(const char* class_name) const {
  return MetaObject()->IsAKindOf(class_name) ? 1 : 0;
}

ZORBaseObject* ZORBaseObject::GetImpl() const {
  return implementation_ != nullptr ? implementation_ : const_cast<ZORBaseObject*>(this);
}

void ZORBaseObject::SetImpl(ZORBaseObject* implementation) {
  implementation_ = implementation;
}

int32_t ZORBaseObject::IsNull() const {
  return 0;
}

int32_t ZORBaseObject::IsEqual(const ZORBaseObject* other) const {
  return other == this ? 1 : 0;
}

void ZORBaseObject::ChangeComponentState(int32_t, int32_t, const void*) {}

const ZORMetaClass* ZORBaseObject::MetaObject() {
  static const ZORMetaClass description("ZORBaseObject", nullptr, "ZORNull", "ZORFramework");
  return &description;
}

const char* ZORBaseObject::ClassName() {
  return MetaObject()->GetName();
}
