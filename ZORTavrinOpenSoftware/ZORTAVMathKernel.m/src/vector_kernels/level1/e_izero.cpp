// SPDX-License-Identifier: MIT
// ix(i) := 0, i = 1..n. Only n = 0 is guarded on the contiguous path.
#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/strided_copy.h"

void e_izero(const int32_t* n, int32_t* ix, const int32_t* incx) {
  zortav::clear_vector(*n, ix, *incx);
}
