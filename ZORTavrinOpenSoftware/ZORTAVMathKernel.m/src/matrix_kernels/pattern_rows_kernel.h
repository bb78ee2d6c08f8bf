// SPDX-License-Identifier: MIT
// Rows of the pattern of Aᵀ·A by sorting instead of marking: the rows of A that meet in a row of the product are put
// one behind the other, at most row_capacity numbers, sorted by a network, and equal neighbours are left out. Nothing
// depends on a comparison's outcome, so nothing is mispredicted, and no array over all columns
// is touched. The numbers sorted are distances from the diagonal, in 16 bits: twice as many fit a register. A row that is
// longer or that reaches farther does not fit. Included by pattern_kernel_unit.cpp only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "matrix_kernels/pattern_kernel_table.h"
#include "matrix_kernels/sorting_network.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr std::int64_t row_capacity = 64;

using ColumnTag = hn::CappedTag<std::int32_t, 8>;
using ColumnVec = hn::Vec<ColumnTag>;
using DistanceTag = hn::Repartition<std::int16_t, ColumnTag>;
using DistanceVec = hn::Vec<DistanceTag>;
constexpr std::size_t column_lanes = hn::MaxLanes(ColumnTag());
constexpr std::size_t distance_lanes = hn::MaxLanes(DistanceTag());

// Distances that do not fit become one of these two. The upper one also fills the places behind a row's end; the lower
// one marks what is left out.
constexpr std::int16_t too_low = std::numeric_limits<std::int16_t>::min();
constexpr std::int16_t too_high = std::numeric_limits<std::int16_t>::max();

constexpr std::int64_t does_not_fit = -1;

// Copies row k of A behind the `count` columns that are there; returns how many are there then. What is beyond
// row_capacity is not copied.
HWY_INLINE std::int64_t append_row(const PatternPair& a, std::int32_t k, std::int32_t* columns, std::int64_t count) {
  constexpr std::int64_t usual_length = 8;  // the nodes of a brick
  const ColumnTag d;
  const std::int64_t first = a.ptr_a[k - 1];
  const std::int64_t length = a.ptr_a[k] - first;
  const std::int32_t* const from = a.idx_a + first;
  std::int32_t* const to = columns + count;
  count += length;
  if (HWY_LIKELY(length == usual_length)) {
    if (HWY_LIKELY(count <= row_capacity)) {
      for (std::size_t at = 0; at < usual_length; at += column_lanes) {
        hn::StoreU(hn::LoadU(d, from + at), d, to + at);
      }
    }
  } else if (count <= row_capacity) {
    for (std::int64_t at = 0; at < length; ++at) {
      to[at] = from[at];
    }
  }
  return count;
}

// The columns of the rows of A that hold column i, in any order; returns how many, whether they fit or not.
HWY_INLINE std::int64_t gather_columns(const PatternPair& a, std::int32_t i, std::int32_t* columns) {
  constexpr std::int32_t usual_rows = 8;  // the bricks around a node; a loop's end would be mispredicted
  std::int64_t count = 0;
  const std::int32_t* k = a.idx_t + a.ptr_t[i - 1];
  const std::int32_t rows = a.ptr_t[i] - a.ptr_t[i - 1];
  if (HWY_LIKELY(rows == usual_rows)) {
#pragma GCC unroll 8
    for (std::int32_t r = 0; r < usual_rows; ++r) {
      count = append_row(a, k[r], columns, count);
    }
    return count;
  }
  for (std::int32_t r = 0; r < rows && count <= row_capacity; ++r) {
    count = append_row(a, k[r], columns, count);
  }
  return count;
}

// The distances of the `count` columns from the diagonal in ascending order, filled up with too_high; whether they fit.
// Writes behind the columns.
template <std::size_t R>
HWY_INLINE bool sort_distances(std::int32_t i, std::int32_t* columns, std::int64_t count, DistanceVec (&r)[R]) {
  const ColumnTag d;
  const DistanceTag distances;
  constexpr auto capacity = static_cast<std::int64_t>(R * distance_lanes);
  for (std::int64_t at = count; at < capacity; at += column_lanes) {
    hn::StoreU(hn::Set(d, std::numeric_limits<std::int32_t>::max()), d, columns + at);
  }
  const ColumnVec diagonal = hn::Set(d, i);
  unrolled<R>([&](auto k) __attribute__((always_inline)) {
    const std::int32_t* const from = columns + k * distance_lanes;
    // Saturates; the order of the numbers does not matter yet.
    r[k] = hn::ReorderDemote2To(distances, hn::Sub(hn::LoadU(d, from), diagonal),
                                hn::Sub(hn::LoadU(d, from + column_lanes), diagonal));
  });
  SortingNetwork<DistanceTag>::sort(r);
  alignas(64) std::int16_t sorted[R * distance_lanes];
  unrolled<R>([&](auto k) __attribute__((always_inline)) { hn::Store(r[k], distances, sorted + k * distance_lanes); });
  const auto last = static_cast<std::size_t>(count - 1);
  return sorted[0] != too_low && sorted[last % R * distance_lanes + last / R] != too_high;
}

// repeats(k, mask) for each register: the lanes that hold the same number as the one before them in the order.
template <std::size_t R, class Repeats>
HWY_INLINE void for_repeated(const DistanceVec (&r)[R], const Repeats& repeats) {
  const DistanceTag d;
  DistanceVec before = hn::Set(d, too_low);
  if constexpr (distance_lanes == 16) {
    before = hn::ConcatLowerLower(d, r[R - 1], before);
  }
  before = hn::CombineShiftRightBytes<16 - sizeof(std::int16_t)>(d, r[R - 1], before);
  unrolled<R>([&](auto k) __attribute__((always_inline)) {
    if constexpr (k == 0) {
      repeats(k, hn::Eq(r[0], before));
    } else {
      repeats(k, hn::Eq(r[k], r[k - 1]));
    }
  });
}

// The length of row i, or does_not_fit.
template <std::size_t R>
HWY_INLINE std::int64_t count_distinct(std::int32_t i, std::int32_t* columns, std::int64_t count) {
  constexpr auto capacity = static_cast<std::int64_t>(R * distance_lanes);
  DistanceVec r[R];
  if (!sort_distances(i, columns, count, r)) {
    return does_not_fit;
  }
  std::size_t repeated = 0;
  for_repeated(
      r, [&](std::size_t, auto mask)
             __attribute__((always_inline)) { repeated += hn::CountTrue(DistanceTag(), mask); });
  // Less the diagonal and the filling.
  return capacity - static_cast<std::int64_t>(repeated) - (count < capacity ? 2 : 1);
}

// The registers, each a row of a matrix with a column for each lane, to that matrix column after column: lower halves
// first, then upper halves, where a register holds two blocks.
template <std::size_t R, std::size_t rows = 1>
HWY_INLINE void to_columns(DistanceVec (&r)[R]) {
  if constexpr (rows < R) {
    using Unit = hwy::SignedFromSize<rows * sizeof(std::int16_t)>;
    const DistanceTag d;
    const hn::Repartition<Unit, DistanceTag> units;
    DistanceVec joined[R];
    // r[k] of each group of 2·rows registers holds units of `rows` numbers: of the group's first and second half.
    unrolled<R>([&](auto k) __attribute__((always_inline)) {
      if constexpr (k % (2 * rows) < rows) {
        constexpr std::size_t group = k - k % (2 * rows);
        constexpr std::size_t at = k % (2 * rows);
        const auto first = hn::BitCast(units, r[k]);
        const auto second = hn::BitCast(units, r[k + rows]);
        joined[group + 2 * at] = hn::BitCast(d, hn::InterleaveLower(units, first, second));
        joined[group + 2 * at + 1] = hn::BitCast(d, hn::InterleaveUpper(units, first, second));
      }
    });
    unrolled<R>([&](auto k) __attribute__((always_inline)) { r[k] = joined[k]; });
    to_columns<R, 2 * rows>(r);
  }
}

// Writes row i; returns its length, or does_not_fit.
template <std::size_t R>
HWY_INLINE std::int64_t write_distinct(std::int32_t i, std::int32_t* columns, std::int64_t count, std::int32_t* row) {
  const DistanceTag d;
  const ColumnTag column_tag;
  DistanceVec r[R];
  if (!sort_distances(i, columns, count, r)) {
    return does_not_fit;
  }
  DistanceVec kept[R];
  const DistanceVec left_out = hn::Set(d, too_low);
  for_repeated(
      r, [&](auto k, auto mask) __attribute__((always_inline)) {
        kept[k] = hn::IfThenElse(hn::Or(mask, hn::Eq(r[k], hn::Zero(d))), left_out, r[k]);
      });
  to_columns(kept);
  const ColumnVec diagonal = hn::Set(column_tag, i);
  std::int64_t length = 0;
  const auto write = [&](auto half) __attribute__((always_inline)) {
    const ColumnVec distance = hn::PromoteTo(column_tag, half);
    const auto keep = hn::Ne(distance, hn::Set(column_tag, too_low));
    hn::StoreU(hn::Compress(hn::Add(distance, diagonal), keep), column_tag, row + length);
    length += static_cast<std::int64_t>(hn::CountTrue(column_tag, keep));
  };
  const hn::Half<DistanceTag> half_tag;
  if constexpr (distance_lanes == 16) {
    unrolled<R>([&](auto k) __attribute__((always_inline)) { write(hn::LowerHalf(kept[k])); });
    unrolled<R>([&](auto k) __attribute__((always_inline)) { write(hn::UpperHalf(half_tag, kept[k])); });
  } else {
    unrolled<R>([&](auto k) __attribute__((always_inline)) {
      write(hn::LowerHalf(kept[k]));
      write(hn::UpperHalf(half_tag, kept[k]));
    });
  }
  // One number of the filling stands at the end.
  return count < static_cast<std::int64_t>(R * distance_lanes) ? length - 1 : length;
}

template <std::size_t R>
using Registers = std::integral_constant<std::size_t, R>;

// row(i, the number of registers, columns, their count) for the rows that are not empty, empty_row(i) for the others,
// until a row does not fit.
template <class Row, class EmptyRow>
HWY_INLINE std::int32_t for_rows(const PatternPair& a, std::int32_t from, std::int32_t end, const Row& row,
                                 const EmptyRow& empty_row) {
  constexpr std::size_t most = row_capacity / distance_lanes;
  constexpr std::int64_t half = row_capacity / 2;
  constexpr std::int64_t quarter = row_capacity / 4;
  alignas(64) std::int32_t columns[row_capacity + column_lanes];
  for (std::int32_t i = from; i < end; ++i) {
    const std::int64_t count = gather_columns(a, i, columns);
    if (count == 0) {
      empty_row(i);
      continue;
    }
    const bool fits = count > row_capacity ? false
                      : count > half       ? row(i, Registers<most>(), columns, count)
                      : count > quarter    ? row(i, Registers<most / 2>(), columns, count)
                                           : row(i, Registers<most / 4>(), columns, count);
    if (!fits) {
      return i;
    }
  }
  return end;
}

std::int32_t count_rows(const PatternPair& a, std::int32_t from, std::int32_t end, std::int32_t* end_of) {
  return for_rows(
      a, from, end,
      [&](std::int32_t i, auto registers, std::int32_t* columns, std::int64_t count) HWY_ATTR {
        const std::int64_t length = count_distinct<registers()>(i, columns, count);
        end_of[1] = end_of[0] + static_cast<std::int32_t>(length);
        ++end_of;
        return length >= 0;
      },
      [&](std::int32_t) {
        end_of[1] = end_of[0];
        ++end_of;
      });
}

std::int32_t fill_rows(const PatternPair& a, std::int32_t from, std::int32_t end, std::int32_t** row) {
  std::int32_t* to = *row;
  const std::int32_t stop = for_rows(
      a, from, end,
      [&](std::int32_t i, auto registers, std::int32_t* columns, std::int64_t count) HWY_ATTR {
        const std::int64_t length = write_distinct<registers()>(i, columns, count, to);
        to += length >= 0 ? length : 0;
        return length >= 0;
      },
      [](std::int32_t) {});
  *row = to;
  return stop;
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
