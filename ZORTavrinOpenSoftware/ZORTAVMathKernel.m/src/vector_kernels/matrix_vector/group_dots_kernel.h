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
// A group's four rows are neighbours in memory, but their sum runs through them one by one. So two columns are
// multiplied as they lie and their products interleaved, until a register holds one product of each group, the two
// columns in turn. Included by matrix_vector_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "dispatch/kernel_unit.h"
#include "vector_kernels/strided.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr std::size_t rows_per_group = 4;
constexpr std::size_t groups_per_step = 8;
constexpr std::size_t running_sums = 4;

using GroupTag = hn::CappedTag<double, rows_per_group>;
using GroupVec = hn::Vec<GroupTag>;
using PairTag = hn::CappedTag<double, 2>;
using PairVec = hn::Vec<PairTag>;
constexpr std::size_t group_width = hn::MaxLanes(GroupTag());
constexpr std::size_t groups_at_once = group_width / 2;
constexpr std::size_t rows_at_once = groups_at_once * rows_per_group;
constexpr std::size_t loads_at_once = rows_at_once / group_width;

// The products of `group_width` rows of columns p and q, interleaved: those of the 1st row, of the 3rd, ... and those
// of the 2nd, of the 4th, ...
struct Products {
  GroupVec odd;
  GroupVec even;
};

HWY_INLINE Products products(const double* p, const double* q, GroupVec x) {
  const GroupTag d;
  const GroupVec of_p = hn::Mul(hn::LoadU(d, p), x);
  const GroupVec of_q = hn::Mul(hn::LoadU(d, q), x);
  return {hn::InterleaveLower(d, of_p, of_q), hn::InterleaveUpper(d, of_p, of_q)};
}

// g of the first group of p, of q, then of the second group of p, of q, if there is a second.
HWY_INLINE GroupVec group_terms(const double* p, const double* q, const GroupVec (&x)[loads_at_once]) {
  const Products first = products(p, q, x[0]);
  const Products last = products(p + group_width, q + group_width, x[1]);
  if constexpr (group_width == 4) {
    const GroupTag d;
    const GroupVec two = hn::ConcatLowerLower(d, hn::Add(last.odd, last.even), hn::Add(first.odd, first.even));
    const GroupVec three = hn::Add(two, hn::ConcatUpperUpper(d, last.odd, first.odd));
    return hn::Add(three, hn::ConcatUpperUpper(d, last.even, first.even));
  } else {
    return hn::Add(hn::Add(hn::Add(first.odd, first.even), last.odd), last.even);
  }
}

HWY_INLINE void load_rows(const double* x, GroupVec (&xs)[loads_at_once]) {
  for (std::size_t k = 0; k < loads_at_once; ++k) {
    xs[k] = hn::LoadU(GroupTag(), x + k * group_width);
  }
}

// Takes `rows` rows of the columns, in whole steps; sums[j] goes from s1 of column j to the sum of its four.
template <std::size_t column_pairs>
HWY_INLINE void sum_steps(std::size_t rows, double alpha, const double* const* column, const double* x, double* sums) {
  const GroupTag d;
  constexpr std::size_t registers = 2 * running_sums / group_width;
  double lane[2 * running_sums] = {};
  GroupVec s[column_pairs][registers];
  for (std::size_t j = 0; j < column_pairs; ++j) {
    lane[0] = sums[2 * j];
    lane[1] = sums[2 * j + 1];
    for (std::size_t r = 0; r < registers; ++r) {
      s[j][r] = hn::LoadU(d, lane + r * group_width);
    }
  }
  const GroupVec scale = hn::Set(d, alpha);
  for (std::size_t i = 0; i < rows;) {
    for (std::size_t r = 0; r < registers; ++r, i += rows_at_once) {
      GroupVec xs[loads_at_once];
      load_rows(x + i, xs);
      for (std::size_t j = 0; j < column_pairs; ++j) {
        const GroupVec g = group_terms(column[2 * j] + i, column[2 * j + 1] + i, xs);
        s[j][r] = hn::Add(s[j][r], hn::Mul(scale, g));
      }
    }
  }
  for (std::size_t j = 0; j < column_pairs; ++j) {
    for (std::size_t r = 0; r < registers; ++r) {
      hn::StoreU(s[j][r], d, lane + r * group_width);
    }
    sums[2 * j] = (lane[0] + lane[4]) + (lane[2] + lane[6]);
    sums[2 * j + 1] = (lane[1] + lane[5]) + (lane[3] + lane[7]);
  }
}

template <class D>
HWY_INLINE PairVec add_group_by_group(D d, PairVec sums, hn::Vec<D> terms) {
  if constexpr (hn::MaxLanes(d) == 4) {
    return hn::Add(hn::Add(sums, hn::LowerHalf(terms)), hn::UpperHalf(PairTag(), terms));
  } else {
    return hn::Add(sums, terms);
  }
}

// Adds the products of the groups in the rows from..to-1 to the sums one at a time.
template <std::size_t column_pairs>
HWY_INLINE void sum_groups(std::size_t from, std::size_t to, double alpha, const double* const* column, const double* x,
                           double* sums) {
  const GroupTag d;
  const PairTag pair;
  std::size_t i = from;
  for (; i + rows_at_once <= to; i += rows_at_once) {
    GroupVec xs[loads_at_once];
    load_rows(x + i, xs);
    for (std::size_t j = 0; j < column_pairs; ++j) {
      const GroupVec terms = hn::Mul(hn::Set(d, alpha), group_terms(column[2 * j] + i, column[2 * j + 1] + i, xs));
      PairVec sum = hn::LoadU(pair, sums + 2 * j);
      sum = add_group_by_group(d, sum, terms);
      hn::StoreU(sum, pair, sums + 2 * j);
    }
  }
  for (; i < to; i += rows_per_group) {
    for (std::size_t j = 0; j < 2 * column_pairs; ++j) {
      double g = element(column[j] + i, 0) * element(x + i, 0);
      for (std::int64_t k = 1; k < 4; ++k) {
        g += element(column[j] + i, k) * element(x + i, k);
      }
      sums[j] += alpha * g;
    }
  }
}

// `count` columns, of which an odd last one is worked on twice.
template <std::size_t column_pairs>
HWY_INLINE void visit_group_dots(std::size_t groups, std::size_t count, double alpha, const double* a,
                                 std::ptrdiff_t lda, const double* x, double beta, double* y) {
  constexpr std::size_t columns = 2 * column_pairs;
  const double* column[columns];
  double sums[columns];
  for (std::size_t j = 0; j < columns; ++j) {
    const std::size_t real = j < count ? j : count - 1;
    column[j] = a + static_cast<std::ptrdiff_t>(real) * lda;
    sums[j] = beta * element(y + real, 0);
  }
  const std::size_t rows = groups * rows_per_group;
  const std::size_t in_steps = rows - rows % (groups_per_step * rows_per_group);
  if (in_steps > 0) {
    sum_steps<column_pairs>(in_steps, alpha, column, x, sums);
  }
  sum_groups<column_pairs>(in_steps, rows, alpha, column, x, sums);
  for (std::size_t j = 0; j < count; ++j) {
    set_element(y + j, 0, sums[j]);
  }
}

void group_dots(std::size_t groups, std::size_t columns, double alpha, const double* a, std::ptrdiff_t lda,
                const double* x, double beta, double* y) {
  // More columns share the loads of x, as long as their running sums stay in registers.
  constexpr std::size_t at_a_time = group_width == 4 ? 8 : 4;
  for (; columns >= at_a_time; columns -= at_a_time) {
    visit_group_dots<at_a_time / 2>(groups, at_a_time, alpha, a, lda, x, beta, y);
    a += static_cast<std::ptrdiff_t>(at_a_time) * lda;
    y += at_a_time;
  }
  while (columns > 0) {
    const std::size_t count = columns >= 2 ? 2 : 1;
    visit_group_dots<1>(groups, count, alpha, a, lda, x, beta, y);
    a += static_cast<std::ptrdiff_t>(count) * lda;
    y += count;
    columns -= count;
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
