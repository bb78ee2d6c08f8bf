// SPDX-License-Identifier: MIT
// The rows of the bordering Cholesky factorization. Included by factor_kernel_unit.cpp only.
#pragma once

#include <cstdint>

#include "algorithms/eaxfch2_panel_kernel.h"
#include "algorithms/eaxfch2_row_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// A panel's copy of its rows on the stack: 364 KiB.
constexpr std::int64_t panel_elements = 46592;
constexpr std::int64_t least_rows_of_a_panel = 3;  // fewer are faster one by one

// As many rows from `base` on as a panel takes, not many more than `wanted`; 0 when they are too long.
inline std::int64_t rows_of_panel(std::int64_t base, std::int64_t wanted) {
  std::int64_t rows = RowPanel::most_rows;
  while (rows > 0 && (rows * (base + rows) > panel_elements || rows >= wanted + short_strip)) {
    rows -= short_strip;
  }
  return rows;
}

std::int64_t factor_rows(std::int64_t first, std::int64_t last, double tol, double* a, double* refused) {
  alignas(64) double x[panel_elements];
  while (first <= last) {
    const std::int64_t base = (first - 1) / short_strip * short_strip;
    const std::int64_t rows = last - first + 1 < least_rows_of_a_panel ? 0 : rows_of_panel(base, last - base);
    std::int64_t row = 0;
    if (rows > 0) {
      row = RowPanel(a, base, rows, first - 1, last, x).factor(tol, refused);
      first = base + rows + 1;
    } else {
      row = factor_row(first, tol, a, refused) ? 0 : first;
      ++first;
    }
    if (row != 0) {
      return row;
    }
  }
  return 0;
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
