// SPDX-License-Identifier: MIT
// The front elimination. Included by factor_kernel_unit.cpp only.
#pragma once

#include <cstdint>

#include "algorithms/easlff_nt_block_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

bool eliminate_front(std::int64_t n, std::int64_t m, double* a, std::int64_t clear_to, PivotTest& test) {
  const Front f{n, a};
  BlockHead head{};
  std::int64_t k = 0;
  for (; m - k >= block_pivots; k += block_pivots) {
    if (!eliminate_block<3>(f, k, clear_to, test, head)) {
      return false;
    }
  }
  switch (m - k) {
    case 2:
      return eliminate_block<2>(f, k, clear_to, test, head);
    case 1:
      return eliminate_block<1>(f, k, clear_to, test, head);
    default:
      return true;
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
