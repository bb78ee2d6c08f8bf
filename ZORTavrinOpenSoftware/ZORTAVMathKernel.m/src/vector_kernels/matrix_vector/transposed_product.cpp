// SPDX-License-Identifier: MIT
// y(j) := beta·y(j) + sum over i of a(i,j)·(alpha·x(i)), the rows of each column's sum paired as pairing.h says.
//
// A block of columns carries its sums through all rows; the factors alpha·x(i) are formed once for all of its columns.
// The columns do not meet, so the block's size leaves no trace in the results.
#include "vector_kernels/matrix_vector/transposed_product.h"

#include <algorithm>
#include <cstddef>

#include "vector_kernels/matrix_vector/matrix_vector_kernel_table.h"
#include "vector_kernels/matrix_vector/row_block.h"
#include "vector_kernels/strided.h"

namespace zortav {

void add_paired_dots(const Rows& rows, const Pairing& order, std::int64_t columns, const double* a, std::int64_t lda,
                     double* sums) {
  const auto factor = [&rows](std::int64_t i) { return rows.scale * element(rows.x, i * rows.incx); };
  const auto add_one_by_one = [&](std::int64_t from, std::int64_t to) {
    for (std::int64_t i = from; i < to; ++i) {
      const double s = factor(i);
      for (std::int64_t j = 0; j < columns; ++j) {
        sums[j] += element(a, i + j * lda) * s;
      }
    }
  };
  add_one_by_one(0, order.peel);
  if (order.pairs > 0) {
    double lanes[2 * column_block];
    for (std::int64_t j = 0; j < columns; ++j) {
      lanes[2 * j] = sums[j];
      lanes[2 * j + 1] = 0;
    }
    double s[row_block];
    for (std::int64_t i = order.peel; i < order.paired_end(); i += row_block) {
      const std::int64_t count = std::min(order.paired_end() - i, row_block);
      for (std::int64_t k = 0; k < count; ++k) {
        s[k] = factor(i + k);
      }
      matrix_vector_kernels().add_row_pairs(static_cast<std::size_t>(count / 2), static_cast<std::size_t>(columns),
                                            a + i, lda, s, lanes);
    }
    for (std::int64_t j = 0; j < columns; ++j) {
      sums[j] = lanes[2 * j] + lanes[2 * j + 1];
    }
  }
  add_one_by_one(order.paired_end(), rows.m);
}

void transposed_product(std::int64_t m, std::int64_t n, double alpha, const double* a, std::int64_t lda,
                        const double* x, std::int64_t incx, double beta, double* y, std::int64_t incy) {
  const Pairing order = pairing(m, x, incx, incy);
  double sums[column_block];
  for (std::int64_t j = 0; j < n; j += column_block) {
    const std::int64_t columns = std::min(n - j, column_block);
    for (std::int64_t k = 0; k < columns; ++k) {
      sums[k] = beta * element(y, (j + k) * incy);
    }
    add_paired_dots({m, x, incx, alpha}, order, columns, a + j * lda, lda, sums);
    for (std::int64_t k = 0; k < columns; ++k) {
      set_element(y, (j + k) * incy, sums[k]);
    }
  }
}

}  // namespace zortav
