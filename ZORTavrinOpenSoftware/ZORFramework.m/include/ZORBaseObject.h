/* SPDX-License-Identifier: MIT */
/* The base of every framework object: lifetime, interfaces, class. */
#ifndef ZOR_BASE_OBJECT_H
#define ZOR_BASE_OBJECT_H

#include <stdint.h>

#include <atomic>

#include "ZORMetaClass.h"
#include "ZORStatus.h"
#include "ZORUuid.h"

/**
 * A reference-counted object. It is made with new and holds one reference, its maker's; the last Release ends it.
 *
 * The order of the virtual operations is part of the binary interface. Derived classes override what they need and add
 * theirs at the end. Nothing throws.
 *
 * Threads: references are counted from any thread; the rest is used by one thread at a time.
 */
class ZOR_EXPORT ZORBaseObject {
 public:
  ZORBaseObject() noexcept;
  /** A copy has one reference of its own. */
  ZORBaseObject(const ZORBaseObject& other) noexcept;
  /** Leaves the references of both objects alone. */
  ZORBaseObject& operator=(const ZORBaseObject& other) noexcept;

  /** Interfaces by identifier: there are none. *result := null; returns ZORStatusNoInterface. */
  virtual int32_t QueryInterface(const ZORUuid& identifier, void** result);
  /** Adds a reference. Returns how many there are. */
  virtual uint32_t AddRef();
  /** Gives up a reference; the object ends with its last one. Returns how many are left. */
  virtual uint32_t Release();
  /** Type information for automation: there is none. *count := 0; returns 0. */
  virtual int32_t GetTypeInfoCount(uint32_t* count);
  /** *information := null; returns ZORStatusNotOffered. */
  virtual int32_t GetTypeInfo(uint32_t index, uint32_t locale, void** information);
  /** Returns ZORStatusNotOffered; identifiers are not written. */
  virtual int32_t GetIDsOfNames(const ZORUuid& reserved, const char* const* names, uint32_t count, uint32_t locale,
                                int32_t* identifiers);
  /** Returns ZORStatusNotOffered; nothing is written. */
  virtual int32_t Invoke(int32_t identifier, const ZORUuid& reserved, uint32_t locale, uint16_t flags, void* parameters,
                         void* result, void* exception, uint32_t* bad_argument);
  /**
   * The object as one of its classes, by name.
   *
   * @param class_name [in] the name of the object's class or of one that it is a kind of.
   * @param result     [out] the object, with a reference added; null when it is of no such class.
   * @return 0, or ZORStatusNoInterface.
   */
  virtual int32_t QueryInterface(const char* class_name, void** result);
  virtual ~ZORBaseObject();
  /** The description of the object's class. */
  virtual const ZORMetaClass* GetMetaObject() const;
  /** The name of the object's class. */
  virtual const char* IsA() const;
  /** 1 when the object's class, or one that it is a kind of, has the name, else 0. */
  virtual int32_t IsAKindOf(const char* class_name) const;
  /** The object that does the work of this one: itself, unless SetImpl named another. */
  virtual ZORBaseObject* GetImpl() const;
  /** Names the object that does the work; null is the object itself. No reference is taken. */
  virtual void SetImpl(ZORBaseObject* implementation);
  /** 1 when there is no object behind this one: never, 0. */
  virtual int32_t IsNull() const;
  /** 1 when both are the same object, else 0. */
  virtual int32_t IsEqual(const ZORBaseObject* other) const;
  /** Told when the component that the object belongs to changes its state. Does nothing. */
  virtual void ChangeComponentState(int32_t from, int32_t to, const void* context);

  /** The description of this class. */
  static const ZORMetaClass* MetaObject();
  static const char* ClassName();

 private:
  std::atomic<uint32_t> references_;
  ZORBaseObject* implementation_;
};

#endif
