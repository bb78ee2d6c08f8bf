// SPDX-License-Identifier: MIT
// The rows of the bordering Cholesky factorization. Included by factor_kernel_unit.cpp only.
#pragma once

#include <cstdint>

#include "algorithms/eaxfch2_row_kernel.h"
#include "algorithms/eaxfch2_strip_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// A strip's copy of its rows on the stack: 352 KiB.
constexpr std::int64_t strip_elements = 45056;
constexpr std::int64_t longest_of_eight = strip_elements / 8;
constexpr std::int64_t longest_of_four = strip_elements / 4;
constexpr std::int64_t least_rows_of_a_strip = 3;  // fewer are faster one by one

// The strip that holds row `first` (from 1), up to row `last`; `next` is the row after those it factored.
template <int Rows>
inline std::int64_t factor_strip(std::int64_t first, std::int64_t last, double tol, double* a, double* x,
                                 double* refused, std::int64_t& next) {
  const std::int64_t base = (first - 1) / Rows * Rows;
  next = last < base + Rows ? last + 1 : base + Rows + 1;
  return RowStrip<Rows>(a, base, first - 1, next - 1, x).factor(tol, refused);
}

std::int64_t factor_rows(std::int64_t first, std::int64_t last, double tol, double* a, double* refused) {
  alignas(64) double x[strip_elements];
  while (first <= last) {
    std::int64_t row = 0;
    std::int64_t next = first + 1;
    const bool enough = last - first + 1 >= least_rows_of_a_strip;
    if (enough && first + 7 <= longest_of_eight) {
      row = factor_strip<8>(first, last, tol, a, x, refused, next);
    } else if (enough && first + 3 <= longest_of_four) {
      row = factor_strip<4>(first, last, tol, a, x, refused, next);
    } else {
      row = factor_row(first, tol, a, refused) ? 0 : first;
    }
    if (row != 0) {
      return row;
    }
    first = next;
  }
  return 0;
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
