// SPDX-License-Identifier: MIT
// Inner loop of eaxscl at unit increments: eight partial sums, whatever the register width, and one tree.
// Included by utility_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

double scalar_product(std::size_t n, const double* x, const double* y) {
  constexpr hn::ScalableTag<double> d;
  constexpr std::size_t lanes = hn::MaxLanes(d);
  constexpr std::size_t partial_sums = 8;
  constexpr std::size_t registers = partial_sums / lanes;

  hn::Vec<decltype(d)> sum[registers];
  for (auto& part : sum) {
    part = hn::Zero(d);
  }
  std::size_t i = 0;
  for (; i + partial_sums <= n; i += partial_sums) {
    for (std::size_t r = 0; r < registers; ++r) {
      const std::size_t at = i + r * lanes;
      sum[r] = hn::Add(sum[r], hn::Mul(hn::LoadU(d, x + at), hn::LoadU(d, y + at)));
    }
  }
  double s[partial_sums];
  for (std::size_t r = 0; r < registers; ++r) {
    hn::StoreU(sum[r], d, s + r * lanes);
  }
  for (std::size_t k = 0; i < n; ++i, ++k) {
    s[k] = s[k] + x[i] * y[i];
  }
  return ((s[0] + s[4]) + (s[2] + s[6])) + ((s[1] + s[5]) + (s[3] + s[7]));
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
