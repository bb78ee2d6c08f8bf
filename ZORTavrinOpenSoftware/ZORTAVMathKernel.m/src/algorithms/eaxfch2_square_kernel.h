// SPDX-License-Identifier: MIT
// Squares of a matrix transposed in registers, between rows of a triangle and strips of them: to[c][r] = from[r][c].
#pragma once

#include <cstdint>

#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// Blocks of rows and columns that are transposed in registers; wider ones take as long.
using SquareTag = hn::CappedTag<double, 4>;
constexpr std::int64_t square = hn::MaxLanes(SquareTag());

HWY_INLINE void transpose_square(const double* const* from, double* const* to) {
  const SquareTag d;
  const auto v0 = hn::LoadU(d, from[0]);
  const auto v1 = hn::LoadU(d, from[1]);
  const auto even01 = hn::InterleaveLower(d, v0, v1);
  const auto odd01 = hn::InterleaveUpper(d, v0, v1);
  if constexpr (square == 2) {
    hn::StoreU(even01, d, to[0]);
    hn::StoreU(odd01, d, to[1]);
  } else {
    const auto v2 = hn::LoadU(d, from[2]);
    const auto v3 = hn::LoadU(d, from[3]);
    const auto even23 = hn::InterleaveLower(d, v2, v3);
    const auto odd23 = hn::InterleaveUpper(d, v2, v3);
    hn::StoreU(hn::ConcatLowerLower(d, even23, even01), d, to[0]);
    hn::StoreU(hn::ConcatLowerLower(d, odd23, odd01), d, to[1]);
    hn::StoreU(hn::ConcatUpperUpper(d, even23, even01), d, to[2]);
    hn::StoreU(hn::ConcatUpperUpper(d, odd23, odd01), d, to[3]);
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
