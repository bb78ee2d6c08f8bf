// SPDX-License-Identifier: MIT
#pragma once

#include <ctime>

namespace zorbench {

// Processor time of this thread: what other programs do to the clock is not ours.
inline double thread_seconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

}  // namespace zorbench
