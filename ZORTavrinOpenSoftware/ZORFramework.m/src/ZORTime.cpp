// SPDX-License-Identifier: MIT
#include "ZORTime.h"

#include "ZORSystem.h"

ZORTime::ZORTime() noexcept : local_{} {
  ZORGetLocalTime(&local_);
}

ZORString ZORTime::ConvertToString(const char* format) const noexcept {
  char text[256];
  // The first day of a month is 1: all zero is what is left when the time cannot be told.
  const bool known = local_.tm_mday != 0;
  // strftime leaves an undetermined text where it returns 0.
  return known && strftime(text, sizeof text, format, &local_) > 0 ? ZORString(text) : ZORString();
}
