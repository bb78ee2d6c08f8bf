// SPDX-License-Identifier: MIT
// How many consecutive rows of a sparse lower triangle begin with the same column indices. The unknowns of one node of
// a finite-element mesh have rows that differ only in the node's own columns, so that such rows can share the loads of
// x and the updates of y (register blocking of rows with identical patterns: Mellor-Crummey and Garvin, "Optimizing
// sparse matrix-vector product computations using unroll and jam", 2004).
#pragma once

#include <cstdint>

#include "dispatch/kernel_unit.h"
#include "matrix_kernels/sparse_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr int tallest_row_block = 3;
// Shorter shared beginnings do not pay for the comparison.
constexpr std::int64_t shortest_shared_row = 2;
// How many entries a row inside a block may have past the shared beginning.
constexpr std::int64_t longest_inner_tail = 4;

// The positions of row i: its off-diagonal entries are at row_begin(i)..row_diagonal(i)-1.
HWY_INLINE std::int64_t row_begin(const SparseRows& a, std::int64_t i) {
  return i == 0 ? 0 : a.rowptr[i];
}
HWY_INLINE std::int64_t row_diagonal(const SparseRows& a, std::int64_t i) {
  return std::int64_t{a.rowptr[i + 1]} - 1;
}

inline bool same_indices(const std::int32_t* a, const std::int32_t* b, std::int64_t count) {
  const hn::ScalableTag<std::int32_t> d;
  constexpr auto lanes = static_cast<std::int64_t>(hn::MaxLanes(hn::ScalableTag<std::int32_t>()));
  std::int64_t k = 0;
  for (; k + lanes <= count; k += lanes) {
    if (!hn::AllTrue(d, hn::Eq(hn::LoadU(d, a + k), hn::LoadU(d, b + k)))) {
      return false;
    }
  }
  for (; k < count; ++k) {
    if (a[k] != b[k]) {
      return false;
    }
  }
  return true;
}

inline bool ascending(const std::int32_t* a, std::int64_t count) {
  const hn::ScalableTag<std::int32_t> d;
  constexpr auto lanes = static_cast<std::int64_t>(hn::MaxLanes(hn::ScalableTag<std::int32_t>()));
  std::int64_t k = 1;
  for (; k + lanes <= count; k += lanes) {
    if (!hn::AllTrue(d, hn::Lt(hn::LoadU(d, a + k - 1), hn::LoadU(d, a + k)))) {
      return false;
    }
  }
  for (; k < count; ++k) {
    if (a[k - 1] >= a[k]) {
      return false;
    }
  }
  return true;
}

// The height 1, 2 or 3 of the block that starts with row i: every further row begins with all off-diagonal columns of
// row i, in the same order. For the symmetric product the shared part is then worked through for all rows at once,
// which keeps the order of the additions into every y(j) only if no column is updated from two places: the shared
// columns must ascend and lie below row i, and what an inner row holds past them must lie above them.
inline int row_block_height(const SparseRows& a, std::int64_t i, bool updates_y) {
  const std::int64_t begin = row_begin(a, i);
  const std::int64_t count = row_diagonal(a, i) - begin;
  if (count < shortest_shared_row || i + 1 >= a.nrows) {
    return 1;
  }
  const std::int32_t* const shared = a.colidx + begin;
  const std::int32_t last = shared[count - 1];
  const auto alike = [&](std::int64_t row) {
    const std::int32_t* const columns = a.colidx + row_begin(a, row);
    return row_diagonal(a, row) - row_begin(a, row) >= count && columns[count - 1] == last &&
           same_indices(shared, columns, count);
  };
  if (!alike(i + 1) || (updates_y && (last > i || !ascending(shared, count)))) {
    return 1;
  }
  if (i + 2 >= a.nrows || !alike(i + 2)) {
    return 2;
  }
  if (updates_y) {
    const std::int64_t tail = row_begin(a, i + 1) + count;
    const std::int64_t tail_count = row_diagonal(a, i + 1) - tail;
    if (tail_count > longest_inner_tail) {
      return 2;
    }
    for (std::int64_t p = tail; p < tail + tail_count; ++p) {
      if (a.colidx[p] <= last) {
        return 2;
      }
    }
  }
  return tallest_row_block;
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
