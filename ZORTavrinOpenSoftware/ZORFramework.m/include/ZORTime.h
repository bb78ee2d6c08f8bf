/* SPDX-License-Identifier: MIT */
/* A point in time. */
#ifndef ZOR_TIME_H
#define ZOR_TIME_H

#include <time.h>

#include "ZORString.h"

/** A point in local time, to the second. Threads: made while none changes the environment; then a plain value. */
class ZOR_EXPORT ZORTime {
 public:
  /** Now. */
  ZORTime() noexcept;
  /**
   * The time as a text.
   *
   * @param format [in] a format of the C runtime's strftime, such as "d%j_h%Hm%M_".
   * @return the text, at most 255 bytes; empty when it would be longer, or the system could not tell the time.
   */
  ZORString ConvertToString(const char* format) const noexcept;

 private:
  struct tm local_;
};

#endif
