// SPDX-License-Identifier: MIT
// x(i) :=: y(i), i = 1..n.
#include <cstdint>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/vector_kernel_table.h"
#include "vector_kernels/strided.h"

void e_dswap(const int32_t* n, double* x, const int32_t* incx, double* y, const int32_t* incy) {
  if (*n <= 0) {
    return;
  }
  if (*incx == 1 && *incy == 1) {
    zortav::vector_kernels().dswap(static_cast<std::size_t>(*n), x, y);
    return;
  }
  const std::int64_t step_x = *incx;
  const std::int64_t step_y = *incy;
  x += zortav::first_position(*n, step_x);
  y += zortav::first_position(*n, step_y);
  zortav::for_each_index(*n, [=](std::int64_t i) {
    const double xi = zortav::element(x, i * step_x);
    zortav::set_element(x, i * step_x, zortav::element(y, i * step_y));
    zortav::set_element(y, i * step_y, xi);
  });
}
