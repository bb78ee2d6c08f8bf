// SPDX-License-Identifier: MIT
// C := A·B for matrices without gaps between their columns.
#include <cstdint>

#include "ZORTAVMatrixProduct.h"
#include "ZORTAVMatrixUtilities.h"

void eaxmmp(const int32_t* m, const int32_t* k, const int32_t* n, const double* a, const double* b, double* c) {
  const double alpha = 1;
  const double beta = 0;
  eagemm("N", "N", m, n, k, &alpha, a, m, b, k, &beta, c, m);
}
