// SPDX-License-Identifier: MIT
// x(1)·y(indx(1)) + ... + x(n)·y(indx(n)), in the order that group_sum.h fixes; the alignment is that of x.
//
// Plain loads of y: hardware gathers were slower at every length on the processors measured.
#include <cstdint>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/group_sum.h"

namespace {

// Two terms at a time: their loads are what the loop waits for, and x comes in pairs.
using Pair = double __attribute__((vector_size(zortav::pair_alignment), may_alias));

double paired_sum(const double* x, const int32_t* indx, const double* y, zortav::Grouping order) {
  const auto term = [=](std::int64_t i) {
    return zortav::element(x, i) * zortav::element(y, zortav::element(indx, i) - std::int64_t{1});
  };
  const auto pair = [=](std::int64_t i) {
    const Pair values{zortav::element(y, zortav::element(indx, i) - std::int64_t{1}),
                      zortav::element(y, zortav::element(indx, i + 1) - std::int64_t{1})};
    return *reinterpret_cast<const Pair*>(x + i) * values;
  };
  Pair s12{order.peel != 0 ? 0.0 + term(0) : 0.0, 0.0};
  Pair s34{0.0, 0.0};
  const std::int64_t end = order.peel + order.groups * zortav::group_size;
  for (std::int64_t i = order.peel; i < end; i += zortav::group_size) {
    s12 = (s12 + pair(i)) + pair(i + 4);
    s34 = (s34 + pair(i + 2)) + pair(i + 6);
  }
  const Pair sum = s12 + s34;
  return sum[0] + sum[1];
}

}  // namespace

double e_ddoti(const int32_t* n, const double* x, const int32_t* indx, const double* y) {
  const std::int64_t count = *n;
  if (count <= 0) {
    return 0;
  }
  const zortav::Grouping order = zortav::contiguous_grouping(count, x);
  const bool paired = order.groups != 0;
  const std::int64_t summed = paired ? order.peel + order.groups * zortav::group_size : 0;
  return zortav::add_one_by_one(paired ? paired_sum(x, indx, y, order) : 0.0, summed, count, [=](std::int64_t i) {
    return zortav::element(x, i) * zortav::element(y, zortav::element(indx, i) - std::int64_t{1});
  });
}
