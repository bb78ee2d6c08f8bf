// SPDX-License-Identifier: MIT
// Inner loop of the transposed product that takes the rows in pairs: a column's two running sums, one for the rows at
// odd and one for those at even places, are a pair of lanes, and a register holds the pairs of as many columns as it
// can. Several registers at once hide the time of an addition.
// Included by matrix_vector_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

template <std::size_t columns>
HWY_INLINE void visit_row_pairs(std::size_t pairs, const double* a, std::ptrdiff_t lda, const double* s,
                                double* lanes) {
  const hn::CappedTag<double, columns == 1 ? 2 : 4> d;
  constexpr std::size_t width = hn::MaxLanes(d);
  constexpr std::size_t registers = 2 * columns / width;
  hn::Vec<decltype(d)> sums[registers];
  for (std::size_t r = 0; r < registers; ++r) {
    sums[r] = hn::LoadU(d, lanes + r * width);
  }
  for (std::size_t p = 0; p < pairs; ++p, a += 2, s += 2) {
    const auto factors = hn::LoadDup128(d, s);
    const double* column = a;
    for (std::size_t r = 0; r < registers; ++r) {
      if constexpr (width == 4) {
        const hn::Half<decltype(d)> half;
        const auto rows = hn::Combine(d, hn::LoadU(half, column + lda), hn::LoadU(half, column));
        sums[r] = hn::Add(sums[r], hn::Mul(rows, factors));
        column += 2 * lda;
      } else {
        sums[r] = hn::Add(sums[r], hn::Mul(hn::LoadU(d, column), factors));
        column += lda;
      }
    }
  }
  for (std::size_t r = 0; r < registers; ++r) {
    hn::StoreU(sums[r], d, lanes + r * width);
  }
}

void add_row_pairs(std::size_t pairs, std::size_t columns, const double* a, std::ptrdiff_t lda, const double* s,
                   double* lanes) {
  constexpr std::size_t at_a_time = 8;
  for (; columns >= at_a_time; columns -= at_a_time) {
    visit_row_pairs<at_a_time>(pairs, a, lda, s, lanes);
    a += static_cast<std::ptrdiff_t>(at_a_time) * lda;
    lanes += 2 * at_a_time;
  }
  for (; columns >= 2; columns -= 2) {
    visit_row_pairs<2>(pairs, a, lda, s, lanes);
    a += 2 * lda;
    lanes += 4;
  }
  if (columns > 0) {
    visit_row_pairs<1>(pairs, a, lda, s, lanes);
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
