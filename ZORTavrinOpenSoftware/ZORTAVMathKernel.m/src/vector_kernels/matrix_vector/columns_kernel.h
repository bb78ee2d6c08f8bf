// SPDX-License-Identifier: MIT
// Inner loops of the plain product: a strip of rows takes some columns of A one after the other. The rows lie side by
// side in the registers, each sum in its own lane, so the order of a row's sum is the order of the columns at any
// width. The sums of a strip stay in registers for all columns of a visit.
//
// Two ways to visit, found by measuring: low blocks, which stay in the second-level cache, take up to 64 columns at a
// time and leave it to the processor to foresee the rows; higher ones stream from further away, where lower
// strips that ask for the columns ahead are faster. Included by matrix_vector_kernel_unit.cpp only.
#pragma once

#include <hwy/cache_control.h>

#include <cstddef>

#include "vector_kernels/elementwise_kernel.h"
#include "vector_kernels/matrix_vector/matrix_vector_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

struct NearVisit {
  static constexpr std::size_t columns = 64;
  static constexpr std::size_t registers = hn::MaxLanes(Widest()) == 8 ? 8 : 4;  // of each sum in a strip
  static constexpr std::size_t ahead = 0;
};
struct FarVisit {
  static constexpr std::size_t columns = 16;
  static constexpr std::size_t registers = 4;
  static constexpr std::size_t ahead = 8;  // columns that are asked for before they are used
};

// Whether a block of this many rows, its columns lda elements apart, is one of the higher ones. Columns whose distance
// is a multiple of a page drive each other's lines out of the first-level cache. A strip of wide registers has taken
// the whole of its lines by then, and asking ahead pays later; one of narrow registers has not, and is kept low.
HWY_INLINE bool is_far(std::size_t rows, std::ptrdiff_t lda) {
  constexpr std::ptrdiff_t page = 4096 / sizeof(double);
  constexpr bool wide = hn::MaxLanes(Widest()) == 8;
  constexpr std::size_t far_rows = 320;
  constexpr std::size_t far_rows_at_pages = wide ? 768 : 0;
  return rows >= (lda % page == 0 ? far_rows_at_pages : far_rows);
}

// Columns 1, 1 + lanes, 1 + 2·lanes, ... go to sums[0], columns 2, 2 + lanes, ... to sums[1]; lanes is 1 or 2, the
// number of columns a multiple of it.
template <std::size_t lanes>
struct ColumnSums {
  std::size_t columns;
  const double* a;
  std::ptrdiff_t lda;
  const double* t;
  double* sums[lanes];
  SecondSum second;
};

template <std::size_t registers, std::size_t columns_ahead, std::size_t lanes, class D>
HWY_INLINE void visit_strip(D d, const ColumnSums<lanes>& c, std::size_t i) {
  constexpr std::size_t width = hn::MaxLanes(D());
  constexpr std::size_t line = 8;
  hn::Vec<D> sum[lanes][registers];
#pragma GCC unroll 8
  for (std::size_t r = 0; r < registers; ++r) {
    sum[0][r] = load(d, c.sums[0] + i + r * width);
    if constexpr (lanes == 2) {
      sum[1][r] = c.second.starts ? hn::Zero(d) : load(d, c.sums[1] + i + r * width);
    }
  }
  const double* column = c.a + i;
  for (std::size_t j = 0; j < c.columns; j += lanes) {
    if constexpr (columns_ahead > 0) {
      // The last columns ask for the first ones of the next strip.
      const std::size_t later = j + columns_ahead;
      const double* ahead = later < c.columns
                                ? column + static_cast<std::ptrdiff_t>(columns_ahead) * c.lda
                                : c.a + i + registers * width + static_cast<std::ptrdiff_t>(later - c.columns) * c.lda;
#pragma GCC unroll 2
      for (std::size_t lane = 0; lane < lanes; ++lane, ahead += c.lda) {
#pragma GCC unroll 8
        for (std::size_t at = 0; at < registers * width; at += line) {
          hwy::Prefetch(ahead + at);
        }
      }
    }
#pragma GCC unroll 2
    for (std::size_t lane = 0; lane < lanes; ++lane, column += c.lda) {
      const auto factor = hn::Set(d, c.t[j + lane]);
#pragma GCC unroll 8
      for (std::size_t r = 0; r < registers; ++r) {
        sum[lane][r] = hn::Add(sum[lane][r], hn::Mul(load(d, column + r * width), factor));
      }
    }
  }
#pragma GCC unroll 8
  for (std::size_t r = 0; r < registers; ++r) {
    if constexpr (lanes == 2) {
      if (c.second.ends) {
        sum[0][r] = hn::Add(sum[0][r], sum[1][r]);
      } else {
        store(d, sum[1][r], c.sums[1] + i + r * width);
      }
    }
    store(d, sum[0][r], c.sums[0] + i + r * width);
  }
}

// Strips of `registers` registers and then of fewer; returns where the next row stands.
template <std::size_t registers, std::size_t ahead, std::size_t lanes>
HWY_INLINE std::size_t visit_strips(const ColumnSums<lanes>& c, std::size_t i, std::size_t rows) {
  constexpr std::size_t height = registers * hn::MaxLanes(Widest());
  for (; i + height <= rows; i += height) {
    visit_strip<registers, ahead>(Widest(), c, i);
  }
  if constexpr (registers > 1) {
    i = visit_strips<registers / 2, 0>(c, i, rows);
  }
  return i;
}

template <class Visit, std::size_t lanes>
HWY_INLINE void visit_by(std::size_t rows, ColumnSums<lanes> all) {
  ColumnSums<lanes> c = all;
  const auto piece = [&c](auto d, std::size_t at) { visit_strip<1, 0>(d, c, at); };
  for (std::size_t j = 0; j < all.columns; j += Visit::columns) {
    const std::size_t left = all.columns - j;
    c.columns = left < Visit::columns ? left : Visit::columns;
    c.second.starts = all.second.starts && j == 0;
    c.second.ends = all.second.ends && left == c.columns;
    std::size_t i = pieces_to_boundary(rows, c.a, piece);
    i = visit_strips<Visit::registers, Visit::ahead>(c, i, rows);
    last_pieces<hn::MaxLanes(Widest()) / 2>(i, rows, piece);
    c.a += static_cast<std::ptrdiff_t>(c.columns) * c.lda;
    c.t += c.columns;
  }
}

template <std::size_t lanes>
HWY_INLINE void visit_all(std::size_t rows, const ColumnSums<lanes>& c) {
  if (is_far(rows, c.lda)) {
    visit_by<FarVisit>(rows, c);
  } else {
    visit_by<NearVisit>(rows, c);
  }
}

void add_columns(std::size_t rows, std::size_t columns, const double* a, std::ptrdiff_t lda, const double* t,
                 double* y) {
  visit_all<1>(rows, {columns, a, lda, t, {y}, {}});
}

void add_column_pairs(std::size_t rows, std::size_t pairs, const double* a, std::ptrdiff_t lda, const double* t,
                      double* odd, double* even, SecondSum second) {
  visit_all<2>(rows, {2 * pairs, a, lda, t, {odd, even}, second});
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
