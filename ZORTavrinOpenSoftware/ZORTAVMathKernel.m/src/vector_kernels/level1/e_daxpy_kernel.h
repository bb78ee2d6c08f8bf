// SPDX-License-Identifier: MIT
// Inner loop of e_daxpy at unit increments. Included by vector_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "vector_kernels/elementwise_kernel.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

void daxpy(std::size_t n, double alpha, const double* x, double* y) {
  in_pieces(n, y, [=](auto d, std::size_t i) {
    const auto product = hn::Mul(load(d, x + i), hn::Set(d, alpha));
    store(d, hn::Add(load(d, y + i), product), y + i);
  });
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
