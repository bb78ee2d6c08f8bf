// SPDX-License-Identifier: MIT
// Inner loop of e_dasum at unit increment: the groups of group_sum.h. The four running sums lie side by side, in one
// register where it holds four lanes and in two otherwise. Wider registers have no place in the fixed order.
// Included by vector_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// s1 starts at `first`; returns (s1 + s3) + (s2 + s4) after all groups.
double dasum_groups(std::size_t groups, double first, const double* x) {
  const hn::CappedTag<double, 4> d;
  constexpr std::size_t lanes = hn::MaxLanes(d);
  constexpr std::size_t registers = 4 / lanes;
  hn::Vec<decltype(d)> sums[registers];
  for (auto& s : sums) {
    s = hn::Zero(d);
  }
  sums[0] = hn::IfThenElseZero(hn::FirstN(d, 1), hn::Set(d, first));
  for (; groups > 0; --groups, x += 8) {
    for (std::size_t half = 0; half < 8; half += 4) {
      for (std::size_t r = 0; r < registers; ++r) {
        sums[r] = hn::Add(sums[r], hn::Abs(hn::LoadU(d, x + half + r * lanes)));
      }
    }
  }
  double s[4];
  for (std::size_t r = 0; r < registers; ++r) {
    hn::StoreU(sums[r], d, s + r * lanes);
  }
  return (s[0] + s[2]) + (s[1] + s[3]);
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
