// SPDX-License-Identifier: MIT
// C := A·B or C := C + A·B. The framework declares this product; the library's own stands behind it, so that both
// routes of eagemm give the same bits. The route is taken when the process is not multi-threaded: no team is formed.
#include <cstdint>

#include "ZORMathematics.h"
#include "ZORTAVVectorKernels.h"
#include "matrix_kernels/blocked_product.h"

int32_t ZORMatrixMult(const double* a, const double* b, double* c, const int32_t* m, const int32_t* n, const int32_t* k,
                      const int32_t* lda, const int32_t* ldb, const int32_t* ldc, const int32_t* /*option*/,
                      const int32_t* accumulate) {
  if (*m < 1 || *n < 1) {
    return 0;
  }
  if (*k < 1) {
    const int32_t one = 1;
    for (int32_t j = 0; *accumulate == 0 && j < *n; ++j) {
      e_dzero(m, c + static_cast<std::int64_t>(j) * *ldc, &one);
    }
    return 0;
  }
  zortav::blocked_product({.transpose_a = false,
                           .transpose_b = false,
                           .m = *m,
                           .n = *n,
                           .k = *k,
                           .alpha = 1.0,
                           .a = a,
                           .lda = *lda,
                           .b = b,
                           .ldb = *ldb,
                           .beta = *accumulate != 0 ? 1.0 : 0.0,
                           .c = c,
                           .ldc = *ldc},
                          zortav::Team::caller_alone);
  return 0;
}
