// SPDX-License-Identifier: MIT
// Times the contenders of a case against each other.
#pragma once

#include <vector>

#include "support/case.h"

namespace zorbench {

struct Effort {
  double seconds;      // that a contender may spend on a case
  std::size_t rounds;  // at most
  double batch;        // seconds a sample shall last, where calls can be repeated
};

inline constexpr Effort quick_effort{0.12, 25, 1e-4};
inline constexpr Effort full_effort{1.0, 101, 5e-4};

struct Timing {
  double seconds = 0.0;  // median of a call
  double ratio = 1.0;    // this contender's time by ours: above 1 when ours is faster
  std::size_t samples = 0;
  bool disturbed = false;  // two threads, and the system took one of them its processor in every sample
};

// Rounds in which every contender runs once, each round beginning with another one, so that what else the machine does
// meets all alike.
// One thread: the processor time of this thread, and medians of the rounds' ratios. More: elapsed time, after the
// threads of the contender before have gone to sleep and an untimed call has woken those of this one; samples in which
// the system took a thread its processor do not count while there are others, and ratios are those of the medians.
// Warm: the operands are where the call before left them. Cold: other data has passed through the caches before each
// call.
std::vector<Timing> measure(const Case& c, const Effort& effort);

double median(std::vector<double> x);

}  // namespace zorbench
