// SPDX-License-Identifier: MIT
// Inner loop of the transposed product that takes the rows in groups of four. With
//
//   g(k) = ((a(i)·x(i) + a(i+1)·x(i+1)) + a(i+2)·x(i+2)) + a(i+3)·x(i+3),   i = 4·k - 3,
//
// of one column, and steps = groups / 8 (whole):
//
//   four running sums s1..s4 start at beta·y, 0, 0, 0;
//   for k = 1..8·steps:  s(1 + (k-1) mod 4) := s(1 + (k-1) mod 4) + alpha·g(k);
//   s := (s1 + s3) + (s2 + s4);  the fewer than eight groups left over are added to s one at a time.
//
// Without a step the groups are added to beta·y one at a time.
//
// A group's four rows are neighbours in memory, but their sum runs through them one by one. So as many columns as a
// register holds, at most four, are multiplied as they lie and their products transposed: a register then holds one
// product of each column, or of two groups of each. Included by matrix_vector_kernel_unit.cpp only.
#pragma once

#include <hwy/cache_control.h>

#include <cstddef>

#include "dispatch/kernel_unit.h"
#include "vector_kernels/strided.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr std::size_t rows_per_group = 4;
constexpr std::size_t rows_per_step = 8 * rows_per_group;
constexpr std::size_t running_sums = 4;

// One lane a column.
using ColumnTag = hn::CappedTag<double, 4>;
using ColumnVec = hn::Vec<ColumnTag>;
constexpr std::size_t columns_abreast = hn::MaxLanes(ColumnTag());

// One lane a column and group.
using GroupTag = hn::CappedTag<double, 8>;
using GroupVec = hn::Vec<GroupTag>;
constexpr std::size_t groups_at_once = hn::MaxLanes(GroupTag()) / columns_abreast;
constexpr std::size_t sum_registers = running_sums / groups_at_once;

// The 2nd, 4th, ... pair of neighbouring elements of both, or the 1st, 3rd, ...; Highway has no name for it. Pairs of
// two groups stand in the order: the first two columns of the 1st group, of the 2nd, the last two columns likewise.
template <std::size_t offset, class D>
HWY_INLINE hn::Vec<D> pairs(D d, hn::Vec<D> high, hn::Vec<D> low) {
  if constexpr (hn::MaxLanes(d) == 8) {
    return hn::Vec<D>{__builtin_shufflevector(low.raw, high.raw, 0 + offset, 1 + offset, 4 + offset, 5 + offset,
                                              8 + offset, 9 + offset, 12 + offset, 13 + offset)};
  } else if constexpr (offset == 0) {
    return hn::ConcatLowerLower(d, high, low);
  } else {
    return hn::ConcatUpperUpper(d, high, low);
  }
}

// The sums of `columns_abreast` columns, in the place of the first group.
template <class D>
HWY_INLINE hn::Vec<D> in_first_group(D d, ColumnVec sums) {
  if constexpr (hn::MaxLanes(d) == 8) {
    const auto wide = hn::ZeroExtendVector(d, sums);
    return hn::Vec<D>{__builtin_shufflevector(wide.raw, wide.raw, 0, 1, 4, 5, 2, 3, 6, 7)};
  } else {
    return sums;
  }
}

// (s1 + s3) + (s2 + s4) of each column.
template <class D>
HWY_INLINE ColumnVec total(D d, const hn::Vec<D> (&s)[sum_registers]) {
  if constexpr (hn::MaxLanes(d) == 8) {
    const auto both = hn::Add(s[0], s[1]);
    const auto sums = hn::Add(both, hn::SwapAdjacentBlocks(both));
    return hn::LowerHalf(hn::Vec<D>{__builtin_shufflevector(sums.raw, sums.raw, 0, 1, 4, 5, 0, 1, 4, 5)});
  } else {
    return hn::Add(hn::Add(s[0], s[2]), hn::Add(s[1], s[3]));
  }
}

// g of each column, of one group or of two.
template <class D>
HWY_INLINE hn::Vec<D> group_terms(D d, const double* const* column, std::size_t i, const double* x) {
  constexpr std::size_t width = hn::MaxLanes(D());
  const auto product = [&](std::size_t j, std::size_t row)
                           HWY_ATTR { return hn::Mul(hn::LoadU(d, column[j] + i + row), hn::LoadU(d, x + i + row)); };
  const auto first = product(0, 0);
  const auto second = product(1, 0);
  if constexpr (width == 2) {
    const auto first_below = product(0, width);
    const auto second_below = product(1, width);
    const auto two = hn::Add(hn::InterleaveLower(d, first, second), hn::InterleaveUpper(d, first, second));
    const auto three = hn::Add(two, hn::InterleaveLower(d, first_below, second_below));
    return hn::Add(three, hn::InterleaveUpper(d, first_below, second_below));
  } else {
    const auto third = product(2, 0);
    const auto fourth = product(3, 0);
    const auto odd_low = hn::InterleaveLower(d, first, second);
    const auto even_low = hn::InterleaveUpper(d, first, second);
    const auto odd_high = hn::InterleaveLower(d, third, fourth);
    const auto even_high = hn::InterleaveUpper(d, third, fourth);
    const auto two = hn::Add(pairs<0>(d, odd_high, odd_low), pairs<0>(d, even_high, even_low));
    const auto three = hn::Add(two, pairs<2>(d, odd_high, odd_low));
    return hn::Add(three, pairs<2>(d, even_high, even_low));
  }
}

// Takes `rows` rows of the columns, in whole steps; the lanes of the columns go from s1 to the sum of all four. A
// function of its own, so that its pointers stay in registers.
template <std::size_t blocks, std::size_t rows_ahead>
HWY_NOINLINE void sum_steps(std::size_t rows, double alpha, const double* const* column, const double* x,
                            double* lanes) {
  const GroupTag d;
  const ColumnTag lane;
  constexpr std::size_t rows_at_once = groups_at_once * rows_per_group;
  constexpr std::size_t line = 8;
  GroupVec s[blocks][sum_registers];
#pragma GCC unroll 8
  for (std::size_t b = 0; b < blocks; ++b) {
#pragma GCC unroll 4
    for (std::size_t r = 0; r < sum_registers; ++r) {
      s[b][r] = r == 0 ? in_first_group(d, hn::LoadU(lane, lanes + b * columns_abreast)) : hn::Zero(d);
    }
  }
  const GroupVec scale = hn::Set(d, alpha);
#pragma GCC unroll 1
  for (std::size_t i = 0; i < rows; i += sum_registers * rows_at_once) {
    if constexpr (rows_ahead > 0) {
#pragma GCC unroll 8
      for (std::size_t j = 0; j < blocks * columns_abreast; ++j) {
#pragma GCC unroll 2
        for (std::size_t at = 0; at < sum_registers * rows_at_once; at += line) {
          hwy::Prefetch(column[j] + i + rows_ahead + at);
        }
      }
    }
#pragma GCC unroll 4
    for (std::size_t r = 0; r < sum_registers; ++r) {
#pragma GCC unroll 8
      for (std::size_t b = 0; b < blocks; ++b) {
        const GroupVec g = group_terms(d, column + b * columns_abreast, i + r * rows_at_once, x);
        s[b][r] = hn::Add(s[b][r], hn::Mul(scale, g));
      }
    }
  }
#pragma GCC unroll 8
  for (std::size_t b = 0; b < blocks; ++b) {
    hn::StoreU(total(d, s[b]), lane, lanes + b * columns_abreast);
  }
}

// Sums of `blocks` times `columns_abreast` columns: sums := beta·sums + alpha·Aᵀ·x.
template <std::size_t blocks, std::size_t rows_ahead>
HWY_INLINE void visit_group_dots(std::size_t groups, double alpha, const double* const* column, const double* x,
                                 double beta, double* sums) {
  const ColumnTag d;
  for (std::size_t b = 0; b < blocks; ++b) {
    double* const own = sums + b * columns_abreast;
    hn::StoreU(hn::Mul(hn::Set(d, beta), hn::LoadU(d, own)), d, own);
  }
  const std::size_t rows = groups * rows_per_group;
  const std::size_t in_steps = rows - rows % rows_per_step;
  if (in_steps > 0) {
    sum_steps<blocks, rows_ahead>(in_steps, alpha, column, x, sums);
  }
  if (in_steps == rows) {
    return;
  }
  for (std::size_t b = 0; b < blocks; ++b) {
    double* const own = sums + b * columns_abreast;
    ColumnVec sum = hn::LoadU(d, own);
#pragma GCC unroll 1
    for (std::size_t i = in_steps; i < rows; i += rows_per_group) {
      sum = hn::Add(sum, hn::Mul(hn::Set(d, alpha), group_terms(d, column + b * columns_abreast, i, x)));
    }
    hn::StoreU(sum, d, own);
  }
}

void group_dots(std::size_t groups, std::size_t columns, double alpha, const double* a, std::ptrdiff_t lda,
                const double* x, double beta, double* y) {
  // Long columns most likely come from memory, and asking for them ahead pays; nearer ones the processor foresees.
  constexpr std::size_t far_groups = 300;
  constexpr std::size_t rows_ahead = 32;
  constexpr std::size_t blocks = 2;
  constexpr std::size_t at_a_time = blocks * columns_abreast;
  const double* column[at_a_time];
  for (; columns >= at_a_time; columns -= at_a_time) {
    for (std::size_t j = 0; j < at_a_time; ++j) {
      column[j] = a + static_cast<std::ptrdiff_t>(j) * lda;
    }
    if (groups >= far_groups) {
      visit_group_dots<blocks, rows_ahead>(groups, alpha, column, x, beta, y);
    } else {
      visit_group_dots<blocks, 0>(groups, alpha, column, x, beta, y);
    }
    a += static_cast<std::ptrdiff_t>(at_a_time) * lda;
    y += at_a_time;
  }
  // The last of fewer columns is worked on again.
  while (columns > 0) {
    const std::size_t count = columns < columns_abreast ? columns : columns_abreast;
    double sums[columns_abreast];
    for (std::size_t j = 0; j < columns_abreast; ++j) {
      const std::size_t real = j < count ? j : count - 1;
      column[j] = a + static_cast<std::ptrdiff_t>(real) * lda;
      sums[j] = element(y + real, 0);
    }
    visit_group_dots<1, 0>(groups, alpha, column, x, beta, sums);
    for (std::size_t j = 0; j < count; ++j) {
      set_element(y + j, 0, sums[j]);
    }
    a += static_cast<std::ptrdiff_t>(count) * lda;
    y += count;
    columns -= count;
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
