// SPDX-License-Identifier: MIT
// Pseudo-random numbers: seed := 65539·seed mod 2^32, r = seed / 2^31 as a signed number
// (the generator RANDU, without its fold of negative values; D. E. Knuth, The Art of Computer Programming 2, 3.3.4).
#include <cstdint>

#include "ZORTAVMatrixUtilities.h"

void eaxrnd(int32_t* seed, double* r) {
  constexpr std::uint32_t multiplier = 65539;
  constexpr std::uint32_t instead_of_zero = 0x80000000U;  // a seed that never moves on
  constexpr double scale = 0x1p-31;

  std::uint32_t next = static_cast<std::uint32_t>(*seed) * multiplier;
  if (next == 0) {
    next = instead_of_zero;
  }
  *seed = static_cast<int32_t>(next);
  *r = *seed * scale;
}
