// SPDX-License-Identifier: MIT
// y(indx(i)) := x(i), i = 1..n in ascending order, so that of duplicate indices the last value stays.
#include <cstdint>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/strided.h"

void e_dsctr(const int32_t* n, const double* x, const int32_t* indx, double* y) {
  zortav::for_each_index(*n, [=](std::int64_t i) {
    zortav::set_element(y, zortav::element(indx, i) - std::int64_t{1}, zortav::element(x, i));
  });
}
