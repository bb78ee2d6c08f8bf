// SPDX-License-Identifier: MIT
// y := alpha·A·x + beta·y.
#include "ZORTAVMatrixVectorProduct.h"
#include "vector_kernels/matrix_vector/plain_product.h"
#include "vector_kernels/matrix_vector/quick_return.h"

void dgemv_n(const int32_t* m, const int32_t* n, const double* alpha, const double* a, const int32_t* lda,
             const double* x, const int32_t* incx, const double* beta, double* y, const int32_t* incy) {
  if (zortav::nothing_to_do(*m, *n, *alpha, *beta)) {
    return;
  }
  zortav::plain_product(*m, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy);
}
