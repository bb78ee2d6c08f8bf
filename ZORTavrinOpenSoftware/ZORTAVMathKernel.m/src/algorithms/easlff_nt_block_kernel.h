// SPDX-License-Identifier: MIT
// Blocks of one to three pivots of the front elimination, one sweep over the front per block. easlff_nt.cpp states the
// order of the operations.
#pragma once

#include <cstdint>
#include <cstring>

#include "algorithms/factor_kernel_table.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr int block_pivots = 3;
constexpr std::int32_t status_pivot_too_small = 6;
constexpr std::int32_t status_ratio_too_small = 34;

// A symmetric front packed by columns of its lower triangle; rows and columns count from 0.
struct Front {
  std::int64_t n;
  double* a;

  std::int64_t diagonal(std::int64_t c) const { return c * n - c * (c - 1) / 2; }
  // column(c)[i] is element (i, c), i >= c
  double* column(std::int64_t c) const { return a + (diagonal(c) - c); }
};

// What the block's steps keep: pivots, their reciprocals and the values that the multipliers replace.
struct BlockHead {
  double d[block_pivots];
  double r[block_pivots];
  double u1;
  double u2;
  double t;
};

// Examines the next equation's pivot. A refused one has to leave `left` in its place.
inline bool passes(double pivot, PivotTest& test, double& left) {
  test.equation = test.equation + 1;
  const double magnitude = pivot < 0 ? -pivot : pivot;
  left = pivot;
  if (test.smallest > magnitude) {
    test.status = status_pivot_too_small;
    test.ratio_minimum = pivot;
    return false;
  }
  const double ratio = pivot / test.initial_diagonal[test.equation - 1];
  if (!(ratio >= test.ratio_minimum)) {  // also when either is not a number
    test.ratio_minimum = ratio;
  }
  if (test.smallest_ratio >= ratio) {
    test.status = status_ratio_too_small;
    left = ratio;
    return false;
  }
  test.accepted = test.accepted + 1;
  return true;
}

// Examines the pivot at position `at` (from 0). A refused one leaves positions at+1 .. clear_to-1 cleared.
inline bool accept_pivot(double* a, std::int64_t at, std::int64_t clear_to, PivotTest& test) {
  double left = 0;
  if (passes(a[at], test, left)) {
    return true;
  }
  if (at + 1 < clear_to) {
    std::memset(a + at + 1, 0, static_cast<std::size_t>(clear_to - at - 1) * sizeof *a);
  }
  a[at] = left;
  return false;
}

// The `Pivots` equations at k among themselves. False when a pivot was refused.
template <int Pivots>
inline bool eliminate_head(const Front& f, std::int64_t k, std::int64_t clear_to, PivotTest& test, BlockHead& head) {
  double* const c1 = f.column(k);
  if (!accept_pivot(f.a, f.diagonal(k), clear_to, test)) {
    return false;
  }
  head.d[0] = c1[k];
  head.r[0] = 1 / head.d[0];
  if constexpr (Pivots >= 2) {
    double* const c2 = f.column(k + 1);
    head.u1 = c1[k + 1];
    c1[k + 1] = head.u1 * head.r[0];
    c2[k + 1] = c2[k + 1] - c1[k + 1] * head.u1;
    if (!accept_pivot(f.a, f.diagonal(k + 1), clear_to, test)) {
      return false;
    }
    head.d[1] = c2[k + 1];
    head.r[1] = 1 / head.d[1];
    if constexpr (Pivots == 3) {
      double* const c3 = f.column(k + 2);
      head.u2 = c1[k + 2];
      c1[k + 2] = head.u2 * head.r[0];
      head.t = c2[k + 2] - c1[k + 2] * head.u1;
      c2[k + 2] = head.t * head.r[1];
      c3[k + 2] = (c3[k + 2] - head.u2 * c1[k + 2]) - head.t * c2[k + 2];
      if (!accept_pivot(f.a, f.diagonal(k + 2), clear_to, test)) {
        return false;
      }
      head.d[2] = c3[k + 2];
      head.r[2] = 1 / head.d[2];
    }
  }
  return true;
}

// Multipliers of the rows below the block.
template <int Pivots>
inline void scale_rows(const Front& f, std::int64_t k, const BlockHead& head) {
  double* __restrict const c1 = f.column(k);
  double* __restrict const c2 = Pivots >= 2 ? f.column(k + 1) : nullptr;
  double* __restrict const c3 = Pivots == 3 ? f.column(k + 2) : nullptr;
  for (std::int64_t i = k + Pivots; i < f.n; ++i) {
    const double l1 = c1[i] * head.r[0];
    c1[i] = l1;
    if constexpr (Pivots >= 2) {
      const double l2 = (c2[i] - l1 * head.u1) * head.r[1];
      c2[i] = l2;
      if constexpr (Pivots == 3) {
        c3[i] = ((c3[i] - head.u2 * l1) - l2 * head.t) * head.r[2];
      }
    }
  }
}

// The last diagonal of an odd trailing order as leftover pivots k .. k+count-1 with the values d update it.
inline double last_diagonal(const Front& f, std::int64_t k, std::int64_t count, const double* d, double a) {
  for (std::int64_t p = 0; p < count; ++p) {
    const double l = f.column(k + p)[f.n - 1];
    a = a - (l * l) * d[p];
  }
  return a;
}

// The rank-`Pivots` update of the trailing triangle.
template <int Pivots>
inline void update_trailing(const Front& f, std::int64_t k, const BlockHead& head) {
  const double* __restrict const l1 = f.column(k);
  const double* __restrict const l2 = Pivots >= 2 ? f.column(k + 1) : nullptr;
  const double* __restrict const l3 = Pivots == 3 ? f.column(k + 2) : nullptr;
  const std::int64_t first = k + Pivots;
  const bool own_last = Pivots < block_pivots && (f.n - first) % 2 != 0;
  for (std::int64_t c = first; c < f.n - (own_last ? 1 : 0); ++c) {
    double* __restrict const a = f.column(c);
    const double g1 = -l1[c] * head.d[0];
    const double g2 = Pivots >= 2 ? -l2[c] * head.d[1] : 0;
    const double g3 = Pivots == 3 ? -l3[c] * head.d[2] : 0;
    for (std::int64_t i = c; i < f.n; ++i) {
      double sum = l1[i] * g1 + a[i];
      if constexpr (Pivots >= 2) {
        sum = sum + l2[i] * g2;
      }
      if constexpr (Pivots == 3) {
        sum = sum + l3[i] * g3;
      }
      a[i] = sum;
    }
  }
  if constexpr (Pivots < block_pivots) {
    if (own_last) {
      double* const last = f.column(f.n - 1) + (f.n - 1);
      *last = last_diagonal(f, k, Pivots, head.d, *last);
    }
  }
}

template <int Pivots>
inline bool eliminate_block(const Front& f, std::int64_t k, std::int64_t clear_to, PivotTest& test, BlockHead& head) {
  if (!eliminate_head<Pivots>(f, k, clear_to, test, head)) {
    return false;
  }
  scale_rows<Pivots>(f, k, head);
  update_trailing<Pivots>(f, k, head);
  return true;
}

// Eliminates the first m equations, one sweep over the front per block. False when a pivot was refused.
inline bool eliminate_blocks(const Front& f, std::int64_t m, std::int64_t clear_to, PivotTest& test) {
  BlockHead head;
  std::int64_t k = 0;
  for (; m - k >= block_pivots; k += block_pivots) {
    if (!eliminate_block<3>(f, k, clear_to, test, head)) {
      return false;
    }
  }
  switch (m - k) {
    case 2:
      return eliminate_block<2>(f, k, clear_to, test, head);
    case 1:
      return eliminate_block<1>(f, k, clear_to, test, head);
    default:
      return true;
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
