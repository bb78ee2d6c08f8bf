// SPDX-License-Identifier: MIT
// Packing of the operands of the matrix-matrix product. Included by product_kernel_unit.cpp only.
//
// A run of up to 248 depths is contiguous; eight depths are one cache line. Across: blocks of lanes × lanes elements
// are transposed in registers, eight depths of each run at a time, so that every line of the buffer is written once.
#pragma once

#include <hwy/cache_control.h>

#include <cstddef>

#include "dispatch/kernel_unit.h"
#include "matrix_kernels/product_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

using PackTag = hn::CappedTag<double, 4>;
using PackVector = hn::Vec<PackTag>;
constexpr std::ptrdiff_t pack_lanes = sizeof(PackVector) / sizeof(double);

// Doubles of a cache line.
constexpr std::ptrdiff_t pack_group = 8;

// Scales and transposes the pack_lanes × pack_lanes block at a into the runs at p.
template <class D>
HWY_INLINE void transpose_block(D d, hn::Vec<D> factor, const double* a, std::ptrdiff_t stride, double* p) {
  const auto load = [&](std::ptrdiff_t l) HWY_ATTR { return hn::Mul(factor, hn::LoadU(d, a + l * stride)); };
  const auto v0 = load(0);
  const auto v1 = load(1);
  const auto even01 = hn::InterleaveLower(d, v0, v1);  // rows 0 (and 2) of depths 0, 1
  const auto odd01 = hn::InterleaveUpper(d, v0, v1);   // rows 1 (and 3)
  if constexpr (pack_lanes == 2) {
    hn::StoreU(even01, d, p);
    hn::StoreU(odd01, d, p + product_run);
  } else {
    const auto v2 = load(2);
    const auto v3 = load(3);
    const auto even23 = hn::InterleaveLower(d, v2, v3);
    const auto odd23 = hn::InterleaveUpper(d, v2, v3);
    hn::StoreU(hn::ConcatLowerLower(d, even23, even01), d, p);
    hn::StoreU(hn::ConcatLowerLower(d, odd23, odd01), d, p + product_run);
    hn::StoreU(hn::ConcatUpperUpper(d, even23, even01), d, p + 2 * product_run);
    hn::StoreU(hn::ConcatUpperUpper(d, odd23, odd01), d, p + 3 * product_run);
  }
}

void pack_across(std::ptrdiff_t runs, std::ptrdiff_t depth, double alpha, const double* a, std::ptrdiff_t stride,
                 double* p) {
  const PackTag d;
  const auto factor = hn::Set(d, alpha);
  const std::ptrdiff_t whole_runs = runs / pack_lanes * pack_lanes;
  const std::ptrdiff_t whole_depth = depth / pack_group * pack_group;
  for (std::ptrdiff_t l0 = 0; l0 < whole_depth; l0 += pack_group) {
    for (std::ptrdiff_t i = 0; i < whole_runs; i += pack_lanes) {
      if (i % pack_group == 0) {
        for (std::ptrdiff_t l = l0 + pack_group; l < HWY_MIN(l0 + 2 * pack_group, depth); ++l) {
          hwy::Prefetch(a + i + l * stride);
        }
      }
      for (std::ptrdiff_t l = l0; l < l0 + pack_group; l += pack_lanes) {
        transpose_block(d, factor, a + i + l * stride, stride, p + i * product_run + l);
      }
    }
  }
  const auto pack_one = [&](std::ptrdiff_t i, std::ptrdiff_t first, std::ptrdiff_t end) HWY_ATTR {
    double* const run = p + i * product_run;
    for (std::ptrdiff_t l = first; l < end; ++l) {
      run[l] = alpha * a[i + l * stride];
    }
  };
  for (std::ptrdiff_t i = 0; i < runs; ++i) {
    if (i >= whole_runs) {
      pack_one(i, 0, whole_depth);
    }
    pack_one(i, whole_depth, depth);
  }
}

void pack_along(std::ptrdiff_t runs, std::ptrdiff_t depth, double alpha, const double* a, std::ptrdiff_t stride,
                double* p) {
  const hn::ScalableTag<double> d;
  const auto step = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  const auto factor = hn::Set(d, alpha);
  for (std::ptrdiff_t i = 0; i < runs; ++i) {
    const double* const column = a + i * stride;
    double* const run = p + i * product_run;
    std::ptrdiff_t l = 0;
    for (; l + step <= depth; l += step) {
      hn::StoreU(hn::Mul(factor, hn::LoadU(d, column + l)), d, run + l);
    }
    for (; l < depth; ++l) {
      run[l] = alpha * column[l];
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
