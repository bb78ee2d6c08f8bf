// SPDX-License-Identifier: MIT
// How many consecutive rows of a sparse lower triangle belong to one node of a finite-element mesh. The rows of a
// node's unknowns link to the same columns and differ only in the node's own triangle, so that they can share the loads
// of x and the updates of y (register blocking of rows with identical patterns: Mellor-Crummey and Garvin, "Optimizing
// sparse matrix-vector product computations using unroll and jam", 2004).
#pragma once

#include <cstdint>

#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// Shorter shared beginnings do not pay for the comparison.
constexpr std::int64_t shortest_shared_row = 2;

// Whether the first `count` column indices ascend strictly in row a and are the same in rows b and c, count > 0.
HWY_INLINE bool same_ascending(const std::int32_t* a, const std::int32_t* b, const std::int32_t* c,
                               std::int64_t count) {
  using D = hn::CappedTag<std::int32_t, 8>;
  const D d;
  constexpr auto lanes = static_cast<std::int64_t>(hn::MaxLanes(D()));
  if (a[0] != b[0] || a[0] != c[0]) {
    return false;
  }
  if (count > lanes) {
    const auto good = [&](std::int64_t k) HWY_ATTR {
      const auto next = hn::LoadU(d, a + k);
      const auto same = hn::And(hn::Eq(next, hn::LoadU(d, b + k)), hn::Eq(next, hn::LoadU(d, c + k)));
      return hn::And(same, hn::Lt(hn::LoadU(d, a + k - 1), next));
    };
    auto all = good(count - lanes);  // may overlap the last of the comparisons below
    for (std::int64_t k = 1; k < count - lanes; k += lanes) {
      all = hn::And(all, good(k));
    }
    return hn::AllTrue(d, all);
  }
  for (std::int64_t k = 1; k < count; ++k) {
    if (a[k] != b[k] || a[k] != c[k] || a[k - 1] >= a[k]) {
      return false;
    }
  }
  return true;
}

// The height of the block that starts with row i, once the first two rows are known to have fitting lengths.
HWY_NOINLINE int compare_rows(const std::int32_t* colidx, const std::int32_t* rowptr, std::int64_t nrows,
                              std::int64_t i, std::int64_t begin, std::int64_t count) {
  const auto own = static_cast<std::int32_t>(i + 1);  // row i as the column indices count
  const std::int32_t* const first = colidx + begin;
  const std::int32_t* const second = first + count + 1;
  const std::int32_t* const third = second + count + 2;
  if (second[count] != own || second[count - 1] >= own) {
    return 1;
  }
  if (i + 2 < nrows && rowptr[i + 3] == rowptr[i + 2] + count + 3 && third[count] == own &&
      third[count + 1] == own + 1 && same_ascending(first, second, third, count)) {
    return 3;
  }
  return same_ascending(first, second, second, count) ? 2 : 1;
}

// The height 1, 2 or 3 of the block that starts with row i (counted from 0), whose off-diagonal entries are at
// positions begin..end-1. Row i+r of a block holds the off-diagonal columns of row i, all below row i and strictly
// ascending, and then the columns of rows i..i+r-1 in this order. No column is then updated from two places of the
// block, and working through the shared columns for all its rows at once keeps the order of the additions into every
// y(j).
HWY_INLINE int row_block_height(const std::int32_t* colidx, const std::int32_t* rowptr, std::int64_t nrows,
                                std::int64_t i, std::int64_t begin, std::int64_t end) {
  const std::int64_t count = end - begin;
  if (i + 1 >= nrows || rowptr[i + 2] != end + 1 + count + 2 || count < shortest_shared_row) {
    return 1;
  }
  return compare_rows(colidx, rowptr, nrows, i, begin, count);
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
