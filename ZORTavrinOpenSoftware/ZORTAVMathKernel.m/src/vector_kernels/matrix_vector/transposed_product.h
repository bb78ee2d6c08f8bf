// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "vector_kernels/matrix_vector/pairing.h"

namespace zortav {

// The rows of a column and what they are multiplied by.
struct Rows {
  std::int64_t m;
  const double* x;
  std::int64_t incx;
  double scale;
};

// sums[j] := sums[j] + sum over i of a(i,j)·(scale·x(i)), j = 1..columns ≤ column_block, the rows in the order given.
void add_paired_dots(const Rows& rows, const Pairing& order, std::int64_t columns, const double* a, std::int64_t lda,
                     double* sums);

// y := alpha·Aᵀ·x + beta·y for n columns, each column's sum in the order that dgemv_t documents. Increments go forward
// from the element that x and y point to.
void transposed_product(std::int64_t m, std::int64_t n, double alpha, const double* a, std::int64_t lda,
                        const double* x, std::int64_t incx, double beta, double* y, std::int64_t incy);

}  // namespace zortav
