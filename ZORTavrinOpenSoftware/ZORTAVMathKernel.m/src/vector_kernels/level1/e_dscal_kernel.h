// SPDX-License-Identifier: MIT
// Inner loop of e_dscal at unit increment. Included by vector_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "vector_kernels/elementwise_kernel.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

void dscal(std::size_t n, double alpha, double* x) {
  in_pieces(n, x, [=](auto d, std::size_t i) { store(d, hn::Mul(hn::Set(d, alpha), load(d, x + i)), x + i); });
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
