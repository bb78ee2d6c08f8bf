/* SPDX-License-Identifier: MIT */
/* What a class of framework objects knows of itself. */
#ifndef ZOR_META_CLASS_H
#define ZOR_META_CLASS_H

#include "ZORExport.h"

/**
 * The description of a class: its name, the class it is a kind of, its interface and its framework. A class keeps one,
 * made on first use and never changed.
 *
 * Threads: may be read from any thread.
 */
class ZOR_EXPORT ZORMetaClass {
 public:
  /** The texts and the base are not copied: they live as long as the object. base is null for a class of no other kind.
   */
  ZORMetaClass(const char* name, const ZORMetaClass* base, const char* interface_name, const char* framework) noexcept;

  const char* GetName() const noexcept;
  const ZORMetaClass* GetBase() const noexcept;
  const char* GetInterfaceName() const noexcept;
  const char* GetFramework() const noexcept;
  /** Whether the class, or one that it is a kind of, has the name. */
  bool IsAKindOf(const char* class_name) const noexcept;

 private:
  const char* name_;
  const ZORMetaClass* base_;
  const char* interface_name_;
  const char* framework_;
};

#endif
