// SPDX-License-Identifier: MIT
#include "ZORUuid.h"

#include <cstring>

#include "platform.h"

ZORUuid::ZORUuid() noexcept {
  zortav::generate_uuid(bytes_);
}

ZORString ZORUuid::ConvertToString() const noexcept {
  constexpr char digits[] = "0123456789abcdef";
  char text[37];
  char* at = text;
  for (int i = 0; i < 16; ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) {
      *at++ = '-';
    }
    *at++ = digits[bytes_[i] >> 4];
    *at++ = digits[bytes_[i] & 0xF];
  }
  *at = '\0';
  return text;
}

bool operator==(const ZORUuid& a, const ZORUuid& b) noexcept {
  return std::memcmp(a.bytes_, b.bytes_, sizeof a.bytes_) == 0;
}

bool operator!=(const ZORUuid& a, const ZORUuid& b) noexcept {
  return !(a == b);
}
