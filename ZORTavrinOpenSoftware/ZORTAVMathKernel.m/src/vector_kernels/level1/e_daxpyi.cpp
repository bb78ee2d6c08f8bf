// SPDX-License-Identifier: MIT
// y(indx(i)) := y(indx(i)) + alpha·x(i), i = 1..n in ascending order, so that duplicate indices add up. Never fused.
#include <cstdint>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/strided.h"

void e_daxpyi(const int32_t* n, const double* alpha, const double* x, const int32_t* indx, double* y) {
  const double factor = *alpha;
  if (*n <= 0 || factor == 0) {
    return;
  }
  zortav::for_each_index(*n, [=](std::int64_t i) {
    const std::int64_t at = zortav::element(indx, i) - std::int64_t{1};
    zortav::set_element(y, at, zortav::element(y, at) + factor * zortav::element(x, i));
  });
}
