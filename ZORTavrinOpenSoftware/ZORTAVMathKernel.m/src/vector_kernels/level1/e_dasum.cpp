// SPDX-License-Identifier: MIT
// |x(1)| + ... + |x(n)|, in the order that group_sum.h fixes.
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/group_sum.h"
#include "vector_kernels/level1/vector_kernel_table.h"

double e_dasum(const int32_t* n, const double* x, const int32_t* incx) {
  const std::int64_t count = *n;
  if (count <= 0) {
    return 0;
  }
  const std::int64_t step = std::llabs(*incx);
  const auto magnitude = [=](std::int64_t i) { return std::fabs(zortav::element(x, i * step)); };
  if (*incx != 1) {
    const std::int64_t groups = step == 0 ? 0 : count / zortav::group_size;
    return zortav::group_sum(count, {0, groups}, magnitude);
  }
  const zortav::Grouping order = zortav::contiguous_grouping(count, x);
  if (order.groups == 0) {
    return zortav::add_one_by_one(0.0, 0, count, magnitude);
  }
  const double first = zortav::add_one_by_one(0.0, 0, order.peel, magnitude);
  const double sum =
      zortav::vector_kernels().dasum_groups(static_cast<std::size_t>(order.groups), first, x + order.peel);
  return zortav::add_one_by_one(sum, order.peel + order.groups * zortav::group_size, count, magnitude);
}
