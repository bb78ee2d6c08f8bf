// SPDX-License-Identifier: MIT
// Inner loops of the plain product: a block of rows takes the columns of A one after the other. The rows lie side by
// side in the registers, each sum in its own lane, so the order of a row's sum is the order of the columns at any
// width. Several columns are taken at a visit of the sums, which then travel between memory and registers less often.
// Included by matrix_vector_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "vector_kernels/elementwise_kernel.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// Columns at a visit: as many as there are registers for their factors.
constexpr std::size_t few_columns = 4;
constexpr std::size_t most_columns = hn::MaxLanes(Widest()) == 8 ? 16 : 8;

// Columns 1, 1 + lanes, 1 + 2·lanes, ... go to sums[0], columns 2, 2 + lanes, ... to sums[1]; lanes is 1 or 2.
template <std::size_t columns, std::size_t lanes>
HWY_INLINE void visit_columns(std::size_t rows, const double* a, std::ptrdiff_t lda, const double* t,
                              double* const (&sums)[lanes]) {
  double factor[columns];
  for (std::size_t j = 0; j < columns; ++j) {
    factor[j] = t[j];
  }
  in_pieces(rows, a, [&](auto d, std::size_t i) {
    hn::Vec<decltype(d)> sum[lanes];
    for (std::size_t lane = 0; lane < lanes; ++lane) {
      sum[lane] = load(d, sums[lane] + i);
    }
    const double* column = a + i;
    for (std::size_t j = 0; j < columns; ++j, column += lda) {
      sum[j % lanes] = hn::Add(sum[j % lanes], hn::Mul(load(d, column), hn::Set(d, factor[j])));
    }
    for (std::size_t lane = 0; lane < lanes; ++lane) {
      store(d, sum[lane], sums[lane] + i);
    }
  });
}

template <std::size_t at_a_time, std::size_t lanes>
HWY_INLINE void visit_all_columns(std::size_t rows, std::size_t columns, const double* a, std::ptrdiff_t lda,
                                  const double* t, double* const (&sums)[lanes]) {
  for (; columns >= at_a_time; columns -= at_a_time) {
    visit_columns<at_a_time, lanes>(rows, a, lda, t, sums);
    a += static_cast<std::ptrdiff_t>(at_a_time) * lda;
    t += at_a_time;
  }
  if constexpr (at_a_time > lanes) {
    visit_all_columns<(at_a_time > few_columns ? few_columns : lanes), lanes>(rows, columns, a, lda, t, sums);
  }
}

void add_columns(std::size_t rows, std::size_t columns, const double* a, std::ptrdiff_t lda, const double* t,
                 double* y) {
  visit_all_columns<most_columns, 1>(rows, columns, a, lda, t, {y});
}

void add_column_pairs(std::size_t rows, std::size_t pairs, const double* a, std::ptrdiff_t lda, const double* t,
                      double* odd, double* even) {
  visit_all_columns<most_columns, 2>(rows, 2 * pairs, a, lda, t, {odd, even});
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
