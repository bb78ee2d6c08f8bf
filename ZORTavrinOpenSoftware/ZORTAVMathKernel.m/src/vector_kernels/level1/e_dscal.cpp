// SPDX-License-Identifier: MIT
// x(i) := alpha·x(i), i = 1..n. Every element is multiplied, whatever alpha is, so NaN and infinity propagate.
#include <cstdint>
#include <cstdlib>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/vector_kernel_table.h"
#include "vector_kernels/strided.h"

void e_dscal(const int32_t* n, const double* alpha, double* x, const int32_t* incx) {
  if (*n <= 0) {
    return;
  }
  if (*incx == 1) {
    zortav::vector_kernels().dscal(static_cast<std::size_t>(*n), *alpha, x);
    return;
  }
  const std::int64_t step = std::llabs(*incx);
  zortav::for_each_index(*n, [=, factor = *alpha](std::int64_t i) {
    zortav::set_element(x, i * step, factor * zortav::element(x, i * step));
  });
}
