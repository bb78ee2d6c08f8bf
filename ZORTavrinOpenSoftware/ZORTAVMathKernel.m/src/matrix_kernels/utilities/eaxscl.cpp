// SPDX-License-Identifier: MIT
// x·y = Σ x(i)·y(i), i = 1..n: in eight partial sums at unit increments, else one product after the other.
#include <cstdint>

#include "ZORTAVMatrixUtilities.h"
#include "matrix_kernels/utilities/utility_kernel_table.h"

double eaxscl(const int32_t* n, const double* x, const int32_t* incx, const double* y, const int32_t* incy) {
  if (*n < 1) {
    return 0;
  }
  if (*incx == 1 && *incy == 1) {
    return zortav::utility_kernels().scalar_product(static_cast<std::size_t>(*n), x, y);
  }
  const std::int64_t step_x = *incx;
  const std::int64_t step_y = *incy;
  const std::int64_t last = std::int64_t{*n} - 1;
  std::int64_t at_x = step_x < 0 ? -last * step_x : 0;
  std::int64_t at_y = step_y < 0 ? -last * step_y : 0;
  double sum = 0;
  for (std::int64_t i = 0; i <= last; ++i) {
    sum = sum + x[at_x] * y[at_y];
    at_x += step_x;
    at_y += step_y;
  }
  return sum;
}
