// SPDX-License-Identifier: MIT
// The rows of the bordering Cholesky factorization. Included by factor_kernel_unit.cpp only.
#pragma once

#include <cstdint>

#include "algorithms/eaxfch2_row_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

std::int64_t factor_rows(std::int64_t first, std::int64_t last, double tol, double* a, double* refused) {
  for (std::int64_t i = first; i <= last; ++i) {
    if (!factor_row(i, tol, a, refused)) {
      return i;
    }
  }
  return 0;
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
