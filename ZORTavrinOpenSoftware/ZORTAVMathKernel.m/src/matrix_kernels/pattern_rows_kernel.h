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

// The columns of the rows of A that hold column i, in any order; returns how many, or does_not_fit.
HWY_INLINE std::int64_t gather_columns(const PatternPair& a, std::int32_t i, std::int32_t* columns) {
  constexpr std::int64_t usual_length = 8;  // of a row of A: the nodes of a brick
  const ColumnTag d;
  std::int64_t count = 0;
  const std::int32_t* const end = a.idx_t + a.ptr_t[i];
  for (const std::int32_t* k = a.idx_t + a.ptr_t[i - 1]; k != end; ++k) {
    const std::int64_t first = a.ptr_a[*k - 1];
    const std::int64_t length = a.ptr_a[*k] - first;
    const std::int32_t* const from = a.idx_a + first;
    std::int32_t* const to = columns + count;
    count += length;
    if (count > row_capacity) {
      return does_not_fit;
    }
    if (length == usual_length) {
      for (std::size_t at = 0; at < usual_length; at += column_lanes) {
        hn::StoreU(hn::LoadU(d, from + at), d, to + at);
      }
    } else {
      for (std::int64_t at = 0; at < length; ++at) {
        to[at] = from[at];
      }
    }
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
  for (std::size_t k = 0; k < R; ++k) {
    const std::int32_t* const from = columns + k * distance_lanes;
    // Saturates; the order of the numbers does not matter yet.
    r[k] = hn::ReorderDemote2To(distances, hn::Sub(hn::LoadU(d, from), diagonal),
                                hn::Sub(hn::LoadU(d, from + column_lanes), diagonal));
  }
  SortingNetwork<DistanceTag>::sort(r);
  alignas(64) std::int16_t sorted[R * distance_lanes];
  for (std::size_t k = 0; k < R; ++k) {
    hn::Store(r[k], distances, sorted + k * distance_lanes);
  }
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
  repeats(0, hn::Eq(r[0], hn::CombineShiftRightBytes<16 - sizeof(std::int16_t)>(d, r[R - 1], before)));
  for (std::size_t k = 1; k < R; ++k) {
    repeats(k, hn::Eq(r[k], r[k - 1]));
  }
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
  for_repeated(r, [&](std::size_t, auto mask) HWY_ATTR { repeated += hn::CountTrue(DistanceTag(), mask); });
  // Less the diagonal and the filling.
  return capacity - static_cast<std::int64_t>(repeated) - (count < capacity ? 2 : 1);
}

// The registers, each a row of a matrix with a column for each lane, to that matrix column after column: lower halves
// first, then upper halves, where a register holds two blocks.
template <std::size_t R>
HWY_INLINE void to_columns(DistanceVec* r) {
  if constexpr (R > 1) {
    using Unit = hwy::MakeSigned<hwy::UnsignedFromSize<R / 2 * sizeof(std::int16_t)>>;
    const DistanceTag d;
    const hn::Repartition<Unit, DistanceTag> units;
    to_columns<R / 2>(r);
    to_columns<R / 2>(r + R / 2);
    DistanceVec out[R];
    for (std::size_t k = 0; k < R / 2; ++k) {
      const auto first = hn::BitCast(units, r[k]);
      const auto second = hn::BitCast(units, r[k + R / 2]);
      out[2 * k] = hn::BitCast(d, hn::InterleaveLower(units, first, second));
      out[2 * k + 1] = hn::BitCast(d, hn::InterleaveUpper(units, first, second));
    }
    for (std::size_t k = 0; k < R; ++k) {
      r[k] = out[k];
    }
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
  for_repeated(r, [&](std::size_t k, auto mask) HWY_ATTR {
    kept[k] = hn::IfThenElse(hn::Or(mask, hn::Eq(r[k], hn::Zero(d))), left_out, r[k]);
  });
  to_columns<R>(kept);
  const ColumnVec diagonal = hn::Set(column_tag, i);
  std::int64_t length = 0;
  const auto write = [&](hn::Vec<hn::Half<DistanceTag>> half) HWY_ATTR {
    const ColumnVec distance = hn::PromoteTo(column_tag, half);
    const auto keep = hn::Ne(distance, hn::Set(column_tag, too_low));
    hn::StoreU(hn::Compress(hn::Add(distance, diagonal), keep), column_tag, row + length);
    length += static_cast<std::int64_t>(hn::CountTrue(column_tag, keep));
  };
  if constexpr (distance_lanes == 16) {
    for (const DistanceVec v : kept) {
      write(hn::LowerHalf(v));
    }
    for (const DistanceVec v : kept) {
      write(hn::UpperHalf(hn::Half<DistanceTag>(), v));
    }
  } else {
    for (const DistanceVec v : kept) {
      write(hn::LowerHalf(v));
      write(hn::UpperHalf(hn::Half<DistanceTag>(), v));
    }
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
    const bool fits = count > half      ? row(i, Registers<most>(), columns, count)
                      : count > quarter ? row(i, Registers<most / 2>(), columns, count)
                      : count > 0       ? row(i, Registers<most / 4>(), columns, count)
                                        : false;
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
