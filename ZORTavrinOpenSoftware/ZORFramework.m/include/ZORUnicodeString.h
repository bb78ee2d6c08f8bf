/* SPDX-License-Identifier: MIT */
/* A text for people and for file names. */
#ifndef ZOR_UNICODE_STRING_H
#define ZOR_UNICODE_STRING_H

#include <stddef.h>

#include "ZORString.h"

/**
 * A Unicode text, held as UTF-8. Bytes that are not valid UTF-8 are kept as they are given (a file name may hold any
 * bytes) and become U+FFFD only on the way to wide characters.
 *
 * When no memory is to be had for a text, the process ends through ZORFatalError; nothing throws.
 *
 * Threads: as a plain value; one object is changed by one thread at a time.
 */
class ZOR_EXPORT ZORUnicodeString {
 public:
  /** The empty text. */
  ZORUnicodeString() noexcept = default;
  /** A copy of a zero-terminated UTF-8 text; null makes the empty text. */
  ZORUnicodeString(const char* utf8) noexcept;  // NOLINT(google-explicit-constructor): a literal is a text
  explicit ZORUnicodeString(const ZORString& utf8) noexcept;

  /** The zero-terminated UTF-8 text, never null. It stays valid until the object changes or ends. */
  const char* GetText() const noexcept;
  /** Its length in bytes, without the terminating zero. */
  size_t GetLength() const noexcept;
  /** Whether the text has no character at all. */
  bool IsEmpty() const noexcept;
  /** Adds a text at the end, which may be the object itself. */
  void Append(const ZORUnicodeString& text) noexcept;

  /**
   * A text from the platform's wide characters (UTF-32 where wchar_t has 32 bits, UTF-16 where it has 16).
   *
   * @param wide [in] zero-terminated; null makes the empty text. An unpaired surrogate or a value that is no character
   *             becomes U+FFFD.
   */
  static ZORUnicodeString FromWide(const wchar_t* wide) noexcept;

  /**
   * The text as the platform's wide characters.
   *
   * @param wide     [out] as many as fit of the wide characters and always a terminating zero; null when capacity is 0.
   * @param capacity [in] the room in wide, the terminating zero included.
   * @return the number of wide characters of the whole text, without the terminating zero.
   */
  size_t ToWide(wchar_t* wide, size_t capacity) const noexcept;

  /** Exact equality, byte for byte: no case, accent or normal form is folded. */
  ZOR_EXPORT friend bool operator==(const ZORUnicodeString& a, const ZORUnicodeString& b) noexcept;
  ZOR_EXPORT friend bool operator!=(const ZORUnicodeString& a, const ZORUnicodeString& b) noexcept;
  ZOR_EXPORT friend ZORUnicodeString operator+(const ZORUnicodeString& a, const ZORUnicodeString& b) noexcept;

 private:
  ZORString utf8_;
};

#endif
