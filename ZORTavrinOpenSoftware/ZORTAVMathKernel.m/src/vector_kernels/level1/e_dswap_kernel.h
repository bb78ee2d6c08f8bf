// SPDX-License-Identifier: MIT
// Inner loop of e_dswap at unit increments. Included by vector_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "vector_kernels/elementwise_kernel.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

void dswap(std::size_t n, double* x, double* y) {
  in_pieces(n, y, [=](auto d, std::size_t i) {
    const auto from_x = load(d, x + i);
    store(d, load(d, y + i), x + i);
    store(d, from_x, y + i);
  });
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
