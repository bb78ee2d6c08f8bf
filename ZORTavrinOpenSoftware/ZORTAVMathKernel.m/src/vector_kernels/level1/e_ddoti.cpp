// SPDX-License-Identifier: MIT
// x(1)·y(indx(1)) + ... + x(n)·y(indx(n)), in the order that group_sum.h fixes; the alignment is that of x.
//
// Plain loads of y: hardware gathers were slower at every length on the processors measured.
#include <cstdint>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/group_sum.h"

double e_ddoti(const int32_t* n, const double* x, const int32_t* indx, const double* y) {
  const std::int64_t count = *n;
  if (count <= 0) {
    return 0;
  }
  return zortav::group_sum(count, zortav::contiguous_grouping(count, x), [=](std::int64_t i) {
    return zortav::element(x, i) * zortav::element(y, zortav::element(indx, i) - std::int64_t{1});
  });
}
