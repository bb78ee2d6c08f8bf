/* SPDX-License-Identifier: MIT */
/* Universally unique identifiers. */
#ifndef ZOR_UUID_H
#define ZOR_UUID_H

#include <stdint.h>

#include "ZORString.h"

/** An identifier of 128 bits (RFC 4122). Threads: as a plain value. */
class ZOR_EXPORT ZORUuid {
 public:
  /** A fresh identifier, unlike any other. */
  ZORUuid() noexcept;
  /** Its text form of 36 characters: 8, 4, 4, 4 and 12 lower-case hexadecimal digits with hyphens between. */
  ZORString ConvertToString() const noexcept;

  ZOR_EXPORT friend bool operator==(const ZORUuid& a, const ZORUuid& b) noexcept;
  ZOR_EXPORT friend bool operator!=(const ZORUuid& a, const ZORUuid& b) noexcept;

 private:
  uint8_t bytes_[16];
};

#endif
