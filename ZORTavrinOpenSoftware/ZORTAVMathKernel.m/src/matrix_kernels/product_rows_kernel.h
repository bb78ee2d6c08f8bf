// SPDX-License-Identifier: MIT
// Gathers rows of op(A), or packed rows, into the tile T: T(i, l) at i + l·(rows of the tile), so that the lanes of a
// register are consecutive rows. Included by product_kernel.h only.
#pragma once

#include <cstddef>

#include "dispatch/kernel_unit.h"
#include "matrix_kernels/product_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

using Tag = hn::CappedTag<double, 8>;
using Vector = hn::Vec<Tag>;
constexpr std::ptrdiff_t lanes = sizeof(Vector) / sizeof(double);

// Pairs of doubles from columns 0, 2, 4 ... of a.
template <class D>
HWY_INLINE hn::Vec<D> load_pairs(D d, const double* a, std::ptrdiff_t stride) {
  if constexpr (sizeof(hn::Vec<D>) == 2 * sizeof(double)) {
    return hn::LoadU(d, a);
  } else {
    const hn::Half<D> half;
    constexpr std::ptrdiff_t columns = sizeof(hn::Vec<D>) / sizeof(double);
    return hn::Combine(d, load_pairs(half, a + columns / 2 * stride, stride), load_pairs(half, a, stride));
  }
}

// T(i, l) := factor·a(i, l) for `rows` rows that run along the depth; rows beyond up to whole registers become zeros.
template <int vectors>
void turn_rows(const RowSource& a, std::ptrdiff_t rows, std::ptrdiff_t depth, double* t) {
  const Tag d;
  constexpr std::ptrdiff_t step = vectors * lanes;
  const Vector factor = hn::Set(d, a.factor);
  for (int v = 0; v < vectors; ++v) {
    const double* const av = a.first + v * lanes * a.stride;
    double* const tv = t + v * lanes;
    std::ptrdiff_t l = 0;
    if (rows >= (v + 1) * lanes) {
      for (; l + 2 <= depth; l += 2) {
        const auto even = hn::Mul(factor, load_pairs(d, av + l, a.stride));
        const auto odd = hn::Mul(factor, load_pairs(d, av + l + a.stride, a.stride));
        hn::Store(hn::InterleaveLower(d, even, odd), d, tv + l * step);
        hn::Store(hn::InterleaveUpper(d, even, odd), d, tv + (l + 1) * step);
      }
    }
    for (; l < depth; ++l) {
      for (std::ptrdiff_t i = 0; i < lanes; ++i) {
        tv[l * step + i] = v * lanes + i < rows ? a.factor * av[l + i * a.stride] : 0.0;
      }
    }
  }
}

// The same for rows that stand side by side.
template <int vectors>
void copy_rows(const RowSource& a, std::ptrdiff_t rows, std::ptrdiff_t depth, double* t) {
  const Tag d;
  constexpr std::ptrdiff_t step = vectors * lanes;
  const Vector factor = hn::Set(d, a.factor);
  const std::ptrdiff_t whole = rows / lanes * lanes;
  for (std::ptrdiff_t l = 0; l < depth; ++l) {
    const double* const al = a.first + l * a.stride;
    double* const tl = t + l * step;
    for (std::ptrdiff_t i = 0; i < whole; i += lanes) {
      hn::Store(hn::Mul(factor, hn::LoadU(d, al + i)), d, tl + i);
    }
    for (std::ptrdiff_t i = whole; i < step; ++i) {
      tl[i] = i < rows ? a.factor * al[i] : 0.0;
    }
  }
}

template <int vectors>
HWY_INLINE void gather_rows(const RowSource& a, std::ptrdiff_t rows, std::ptrdiff_t depth, double* t) {
  if (a.along_depth) {
    turn_rows<vectors>(a, rows, depth, t);
  } else {
    copy_rows<vectors>(a, rows, depth, t);
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
