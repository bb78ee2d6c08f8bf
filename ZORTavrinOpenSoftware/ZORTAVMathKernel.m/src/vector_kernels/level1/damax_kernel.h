// SPDX-License-Identifier: MIT
// Inner loop of damax and e_idamax at unit increment. Included by vector_kernel_unit.cpp only.
//
// A maximum does not depend on the order in which it is sought, and taking an element twice does not change it: the
// last register may overlap the one before.
#pragma once

#include <cstddef>

#include "vector_kernels/elementwise_kernel.h"
#include "vector_kernels/level1/magnitude.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

template <class D>
double max_magnitude_in(D d, std::size_t n, const double* x) {
  constexpr std::size_t lanes = hn::MaxLanes(D());
  if constexpr (lanes == 1) {
    return strided_max_magnitude(static_cast<std::int64_t>(n), x, 1);
  } else {
    if (n < lanes) {
      return max_magnitude_in(hn::CappedTag<double, lanes / 2>(), n, x);
    }
    constexpr std::size_t chains = 4;  // the latency of a maximum
    // These processors' maximum of a NaN and a number is the second operand: a NaN is passed over.
    const auto take = [=](auto found, std::size_t i) HWY_ATTR { return hn::Max(hn::Abs(hn::LoadU(d, x + i)), found); };
    hn::Vec<D> found[chains];
    for (auto& f : found) {
      f = hn::Set(d, no_magnitude);
    }
    std::size_t i = 0;
    for (; i + chains * lanes <= n; i += chains * lanes) {
      for (std::size_t c = 0; c < chains; ++c) {
        found[c] = take(found[c], i + c * lanes);
      }
    }
    for (; i + lanes <= n; i += lanes) {
      found[0] = take(found[0], i);
    }
    found[1] = take(found[1], n - lanes);
    const auto all = hn::Max(hn::Max(found[0], found[1]), hn::Max(found[2], found[3]));
    return hn::GetLane(hn::MaxOfLanes(d, all));
  }
}

double max_magnitude(std::size_t n, const double* x) {
  return max_magnitude_in(Widest(), n, x);
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
