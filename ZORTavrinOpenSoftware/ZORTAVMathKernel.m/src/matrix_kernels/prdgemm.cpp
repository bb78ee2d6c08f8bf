// SPDX-License-Identifier: MIT
// C := A·B, or C := C + A·B when beta is exactly 1, by the framework's product. transa, transb and alpha are not read:
// the caller guarantees that the plain product is wanted.
#include <cstdint>

#include "ZORMathematics.h"
#include "ZORTAVMatrixProduct.h"

int32_t prdgemm(const char* /*transa*/, const char* /*transb*/, const int32_t* m, const int32_t* n, const int32_t* k,
                const double* /*alpha*/, const double* a, const int32_t* lda, const double* b, const int32_t* ldb,
                const double* beta, double* c, const int32_t* ldc, int64_t /*transa_length*/,
                int64_t /*transb_length*/) {
  const int32_t option = 0;
  const int32_t accumulate = *beta == 1.0 ? 1 : 0;
  return ZORMatrixMult(a, b, c, m, n, k, lda, ldb, ldc, &option, &accumulate);
}
