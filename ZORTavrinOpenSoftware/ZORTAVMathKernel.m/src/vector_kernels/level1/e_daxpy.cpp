// SPDX-License-Identifier: MIT
// y(i) := y(i) + alpha·x(i), i = 1..n. Multiply, round, add, round: never fused, so that an element has the same bits
// on every path and at every instruction-set level.
#include <cstdint>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/vector_kernel_table.h"
#include "vector_kernels/strided.h"

void e_daxpy(const int32_t* n, const double* alpha, const double* x, const int32_t* incx, double* y,
             const int32_t* incy) {
  const double factor = *alpha;
  if (*n <= 0 || factor == 0) {
    return;
  }
  if (*incx == 1 && *incy == 1) {
    zortav::vector_kernels().daxpy(static_cast<std::size_t>(*n), factor, x, y);
    return;
  }
  const std::int64_t step_x = *incx;
  const std::int64_t step_y = *incy;
  x += zortav::first_position(*n, step_x);
  y += zortav::first_position(*n, step_y);
  // One element after the other: at increment 0 they accumulate in the one element of y.
  zortav::for_each_index(*n, [=](std::int64_t i) {
    const double yi = zortav::element(y, i * step_y);
    zortav::set_element(y, i * step_y, yi + zortav::element(x, i * step_x) * factor);
  });
}
