/* SPDX-License-Identifier: MIT */
/* A text of bytes, for names and identifiers. */
#ifndef ZOR_STRING_H
#define ZOR_STRING_H

#include <stddef.h>

#include "ZORExport.h"

/**
 * A zero-terminated text that owns its storage. The bytes are UTF-8 and are kept as they are given.
 *
 * When no memory is to be had for a text, the process ends through ZORFatalError; nothing throws.
 *
 * Threads: as a plain value; one object is changed by one thread at a time.
 */
class ZOR_EXPORT ZORString {
 public:
  /** The empty text. */
  ZORString() noexcept = default;
  /** A copy of a zero-terminated text; null makes the empty text. */
  ZORString(const char* text) noexcept;  // NOLINT(google-explicit-constructor): a literal is a text
  ZORString(const ZORString& other) noexcept;
  ZORString(ZORString&& other) noexcept;
  ZORString& operator=(const ZORString& other) noexcept;
  ZORString& operator=(ZORString&& other) noexcept;
  ~ZORString();

  /** The zero-terminated text, never null. It stays valid until the object changes or ends. */
  const char* GetText() const noexcept;
  /** Its length in bytes, without the terminating zero. */
  size_t GetLength() const noexcept;
  /** Whether the text has no character at all. */
  bool IsEmpty() const noexcept;
  /** Adds a text at the end, which may be the object itself. */
  void Append(const ZORString& text) noexcept;

  /** Exact equality, byte for byte: no case, accent or normal form is folded. */
  ZOR_EXPORT friend bool operator==(const ZORString& a, const ZORString& b) noexcept;
  ZOR_EXPORT friend bool operator!=(const ZORString& a, const ZORString& b) noexcept;
  ZOR_EXPORT friend ZORString operator+(const ZORString& a, const ZORString& b) noexcept;

 private:
  char* text_ = nullptr;  // null for the empty text
  size_t length_ = 0;
};

#endif
