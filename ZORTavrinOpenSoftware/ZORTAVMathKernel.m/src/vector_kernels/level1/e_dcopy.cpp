// SPDX-License-Identifier: MIT
// y(i) := x(i), i = 1..n.
#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/strided_copy.h"

void e_dcopy(const int32_t* n, const double* x, const int32_t* incx, double* y, const int32_t* incy) {
  zortav::copy_vector(*n, x, *incx, y, *incy);
}
