// SPDX-License-Identifier: MIT
// y := alpha·Aᵀ·x + beta·y for the rows that form whole groups of four. Increments other than 1 take the order of
// dgemv_t, for the columns that form whole groups of four.
#include <cstddef>

#include "ZORTAVMatrixVectorProduct.h"
#include "vector_kernels/matrix_vector/matrix_vector_kernel_table.h"
#include "vector_kernels/matrix_vector/quick_return.h"
#include "vector_kernels/matrix_vector/transposed_product.h"

void dgemv32_t(const int32_t* m, const int32_t* n, const double* alpha, const double* a, const int32_t* lda,
               const double* x, const int32_t* incx, const double* beta, double* y, const int32_t* incy) {
  constexpr int32_t group = 4;
  if (zortav::nothing_to_do(*m, *n, *alpha, *beta)) {
    return;
  }
  if (*incx == 1 && *incy == 1) {
    zortav::matrix_vector_kernels().group_dots(static_cast<std::size_t>(*m / group), static_cast<std::size_t>(*n),
                                               *alpha, a, *lda, x, *beta, y);
    return;
  }
  zortav::transposed_product(*m, *n - *n % group, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
