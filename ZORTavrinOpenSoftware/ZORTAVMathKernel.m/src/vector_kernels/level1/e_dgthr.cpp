// SPDX-License-Identifier: MIT
// x(i) := y(indx(i)), i = 1..n in ascending order.
//
// Plain loads of y: hardware gathers were slower at every length on the processors measured.
#include <cstdint>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/strided.h"

void e_dgthr(const int32_t* n, const double* y, double* x, const int32_t* indx) {
  zortav::for_each_index(*n, [=](std::int64_t i) {
    zortav::set_element(x, i, zortav::element(y, zortav::element(indx, i) - std::int64_t{1}));
  });
}
