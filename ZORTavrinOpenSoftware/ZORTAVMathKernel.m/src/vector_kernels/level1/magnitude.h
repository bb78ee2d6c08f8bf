// SPDX-License-Identifier: MIT
// What the searches for the largest magnitude share. No comparison with a NaN holds, so a NaN is passed over.
#pragma once

#include <cstdint>

#include "vector_kernels/strided.h"

namespace zortav {

// Below every magnitude: where a search starts, and what it finds among NaNs only.
inline constexpr double no_magnitude = -1;

static inline double magnitude(const double* x, std::int64_t i) noexcept {
  return __builtin_fabs(element(x, i));
}

// max |x(i)| over n elements `step` apart, no_magnitude if there is none.
static inline double strided_max_magnitude(std::int64_t n, const double* x, std::int64_t step) noexcept {
  constexpr std::int64_t chains = 4;  // hides the latency of a comparison
  const auto larger = [](double a, double b) { return a > b ? a : b; };
  double found[chains] = {no_magnitude, no_magnitude, no_magnitude, no_magnitude};
  std::int64_t i = 0;
  for (; i + chains <= n; i += chains) {
    for (std::int64_t c = 0; c < chains; ++c) {
      found[c] = larger(magnitude(x, (i + c) * step), found[c]);
    }
  }
  for (; i < n; ++i) {
    found[0] = larger(magnitude(x, i * step), found[0]);
  }
  return larger(larger(found[0], found[1]), larger(found[2], found[3]));
}

}  // namespace zortav
