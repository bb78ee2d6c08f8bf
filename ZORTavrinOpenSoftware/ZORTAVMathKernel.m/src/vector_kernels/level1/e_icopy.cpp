// SPDX-License-Identifier: MIT
// iy(i) := ix(i), i = 1..n.
#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/strided_copy.h"

void e_icopy(const int32_t* n, const int32_t* ix, const int32_t* incx, int32_t* iy, const int32_t* incy) {
  zortav::copy_vector(*n, ix, *incx, iy, *incy);
}
