// SPDX-License-Identifier: MIT
// x(i) := 0, i = 1..n. Only n = 0 is guarded on the contiguous path.
#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/strided_copy.h"

void e_dzero(const int32_t* n, double* x, const int32_t* incx) {
  zortav::clear_vector(*n, x, *incx);
}
