// SPDX-License-Identifier: MIT
// sizes at level L := sizes / 2^L,  centre of a child := centre − half / 2 (+ half in the upper half).
#pragma once

#include <bit>
#include <cstdint>

namespace zortav {

// What an infinite ratio of diagonals counts as: no ratio of two finite doubles reaches 4^(deepest_level + 1).
inline constexpr std::uint32_t deepest_level = 512;

// 2^(−level), for level up to deepest_level + 1. Multiplying by it rounds as dividing by 2^level does.
inline double level_scale(std::uint32_t level) {
  constexpr std::uint64_t bias = 1023;
  constexpr int mantissa_bits = 52;
  return std::bit_cast<double>((bias - level) << mantissa_bits);
}

inline double child_centre(double centre, double half, bool upper) {
  const double lower = centre - half / 2;
  return upper ? lower + half : lower;
}

}  // namespace zortav
