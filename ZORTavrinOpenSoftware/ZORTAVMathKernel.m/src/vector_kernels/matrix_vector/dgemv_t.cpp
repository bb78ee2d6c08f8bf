// SPDX-License-Identifier: MIT
// y := alpha·Aᵀ·x + beta·y.
#include "ZORTAVMatrixVectorProduct.h"
#include "vector_kernels/matrix_vector/quick_return.h"
#include "vector_kernels/matrix_vector/transposed_product.h"

void dgemv_t(const int32_t* m, const int32_t* n, const double* alpha, const double* a, const int32_t* lda,
             const double* x, const int32_t* incx, const double* beta, double* y, const int32_t* incy) {
  if (zortav::nothing_to_do(*m, *n, *alpha, *beta)) {
    return;
  }
  zortav::transposed_product(*m, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
