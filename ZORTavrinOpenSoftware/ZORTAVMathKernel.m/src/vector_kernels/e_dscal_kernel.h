// SPDX-License-Identifier: MIT
// Inner loop of e_dscal at unit increment. Included by vector_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

void dscal(std::size_t n, double alpha, double* x) {
  const hn::ScalableTag<double> d;
  const std::size_t lanes = hn::Lanes(d);
  const auto factor = hn::Set(d, alpha);
  std::size_t i = 0;
  for (; i + 4 * lanes <= n; i += 4 * lanes) {
    for (std::size_t part = 0; part < 4; ++part) {
      double* const at = x + i + part * lanes;
      hn::StoreU(hn::Mul(factor, hn::LoadU(d, at)), d, at);
    }
  }
  for (; i < n; ++i) {
    x[i] = alpha * x[i];
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
