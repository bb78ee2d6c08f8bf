// SPDX-License-Identifier: MIT
// The block product: C(i, j) := beta·C(i, j) + Σ P(l, i)·B(l, j). Included by product_kernel_unit.cpp only.
//
// Both operands are contiguous in the depth l, so each element of C is a dot product of two unit-stride streams. It is
// summed in eight lanes (lane t takes l-1 = t, t+8, ...; lane 0 starts at beta·C, the others at 0) with fused
// multiply-adds where the level has them, and the lanes are added by one tree:
//
//   s(t) = x(t) + x(t+4), t = 0..3;   sum = (s(0) + s(1)) + (s(2) + s(3)).
//
// A register narrower than eight lanes makes several passes over the depth, each over its share of the lanes, so that
// the tile of elements held in registers stays large and every level forms the same sums.
#pragma once

#include <cstddef>

#include "dispatch/kernel_unit.h"
#include "matrix_kernels/product_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

using Tag = hn::CappedTag<double, 8>;
using Vector = hn::Vec<Tag>;
constexpr int lanes = static_cast<int>(sizeof(Vector) / sizeof(double));
constexpr int passes = static_cast<int>(product_lanes) / lanes;

// Four rows by as many columns as the registers carry: 24 accumulators of 32 registers, 12 or 8 of 16.
constexpr int tile_rows = 4;
constexpr int tile_columns = lanes == 8 ? 6 : lanes == 4 ? 3 : 2;
// Columns of B that stay in the first-level cache while the packed rows stream past.
constexpr int chunk_columns = 6;

// Stores the sums over the lanes of `rows` rows of one column: x[pass][row].
template <int rows, class D, class V>
HWY_INLINE void store_sums(D d, const V (&x)[passes][tile_rows], double* c) {
  if constexpr (lanes == 2) {
    for (int row = 0; row < rows; row += 2) {
      const auto s01a = hn::Add(x[0][row], x[2][row]);
      const auto s23a = hn::Add(x[1][row], x[3][row]);
      const auto s01b = hn::Add(x[0][row + 1], x[2][row + 1]);
      const auto s23b = hn::Add(x[1][row + 1], x[3][row + 1]);
      const auto s01 = hn::Add(hn::InterleaveLower(d, s01a, s01b), hn::InterleaveUpper(d, s01a, s01b));
      const auto s23 = hn::Add(hn::InterleaveLower(d, s23a, s23b), hn::InterleaveUpper(d, s23a, s23b));
      const auto sum = hn::Add(s01, s23);
      if (row + 1 < rows) {
        hn::StoreU(sum, d, c + row);
      } else {
        c[row] = hn::GetLane(sum);
      }
    }
  } else {
    const hn::CappedTag<double, 4> d4;
    hn::Vec<decltype(d4)> s[tile_rows];
#pragma GCC unroll 4
    for (int row = 0; row < tile_rows; ++row) {
      if constexpr (lanes == 8) {
        s[row] = hn::Add(hn::LowerHalf(d4, x[0][row]), hn::UpperHalf(d4, x[0][row]));
      } else {
        s[row] = hn::Add(x[0][row], x[1][row]);
      }
    }
    const auto s01 = hn::Add(hn::InterleaveLower(d4, s[0], s[1]), hn::InterleaveUpper(d4, s[0], s[1]));
    const auto s23 = hn::Add(hn::InterleaveLower(d4, s[2], s[3]), hn::InterleaveUpper(d4, s[2], s[3]));
    const auto sum = hn::Add(hn::ConcatLowerLower(d4, s23, s01), hn::ConcatUpperUpper(d4, s23, s01));
    if constexpr (rows == tile_rows) {
      hn::StoreU(sum, d4, c);
    } else {
      HWY_ALIGN double element[4];
      hn::Store(sum, d4, element);
      for (int row = 0; row < rows; ++row) {
        c[row] = element[row];
      }
    }
  }
}

// One tile of C. `groups` full groups of eight depths are read from B in place; `tail`, when not null, holds the
// last, incomplete group of each column, padded with zeros.
template <int rows, int columns>
HWY_INLINE void update_tile(std::ptrdiff_t groups, const double* HWY_RESTRICT p, const double* HWY_RESTRICT b,
                            std::ptrdiff_t ldb, const double* HWY_RESTRICT tail, double beta, double* HWY_RESTRICT c,
                            std::ptrdiff_t ldc) {
  const Tag d;
  const auto first_lane = hn::FirstN(d, 1);
  Vector sum[columns][passes][tile_rows];
#pragma GCC unroll 4
  for (int pass = 0; pass < passes; ++pass) {
    Vector x[columns][rows];
#pragma GCC unroll 8
    for (int j = 0; j < columns; ++j) {
#pragma GCC unroll 4
      for (int i = 0; i < rows; ++i) {
        x[j][i] = hn::Zero(d);
        if (pass == 0 && beta != 0.0) {
          x[j][i] = hn::IfThenElseZero(first_lane, hn::Set(d, beta * c[i + j * ldc]));
        }
      }
    }
    const double* HWY_RESTRICT p_at = p + pass * lanes;
    const double* HWY_RESTRICT b_at = b + pass * lanes;
    for (std::ptrdiff_t group = 0; group < groups; ++group) {
      Vector bv[columns];
#pragma GCC unroll 8
      for (int j = 0; j < columns; ++j) {
        bv[j] = hn::LoadU(d, b_at + j * ldb);
      }
#pragma GCC unroll 4
      for (int i = 0; i < rows; ++i) {
        const Vector pv = hn::Load(d, p_at + i * product_run);
#pragma GCC unroll 8
        for (int j = 0; j < columns; ++j) {
          x[j][i] = hn::MulAdd(pv, bv[j], x[j][i]);
        }
      }
      p_at += product_lanes;
      b_at += product_lanes;
    }
    if (tail != nullptr) {
#pragma GCC unroll 8
      for (int j = 0; j < columns; ++j) {
        const Vector bv = hn::Load(d, tail + j * product_lanes + pass * lanes);
#pragma GCC unroll 4
        for (int i = 0; i < rows; ++i) {
          x[j][i] = hn::MulAdd(hn::Load(d, p_at + i * product_run), bv, x[j][i]);
        }
      }
    }
#pragma GCC unroll 8
    for (int j = 0; j < columns; ++j) {
#pragma GCC unroll 4
      for (int i = 0; i < tile_rows; ++i) {
        sum[j][pass][i] = i < rows ? x[j][i < rows ? i : 0] : hn::Zero(d);
      }
    }
  }
#pragma GCC unroll 8
  for (int j = 0; j < columns; ++j) {
    store_sums<rows>(d, sum[j], c + j * ldc);
  }
}

template <int columns>
void update_tile_at(const RowBlockUpdate& task, std::ptrdiff_t row, std::ptrdiff_t j, const double* tail) {
  const std::ptrdiff_t groups = task.depth / product_lanes;
  const double* const p = task.p + row * product_run;
  const double* const b = task.b + j * task.ldb;
  double* const c = task.c + row + j * task.ldc;
  switch (task.rows - row) {
    case 1:
      return update_tile<1, columns>(groups, p, b, task.ldb, tail, task.beta, c, task.ldc);
    case 2:
      return update_tile<2, columns>(groups, p, b, task.ldb, tail, task.beta, c, task.ldc);
    case 3:
      return update_tile<3, columns>(groups, p, b, task.ldb, tail, task.beta, c, task.ldc);
    default:
      return update_tile<tile_rows, columns>(groups, p, b, task.ldb, tail, task.beta, c, task.ldc);
  }
}

// Brings the next chunk's columns of B and tiles of C nearer while the current chunk is computed: each row tile fetches
// its share of their cache lines.
class NextChunk {
 public:
  NextChunk(const RowBlockUpdate& task, std::ptrdiff_t j0)
      : b_(task.b + j0 * task.ldb),
        c_(task.c + j0 * task.ldc),
        ldb_(task.ldb),
        ldc_(task.ldc),
        columns_(HWY_MIN(chunk_columns, task.columns - j0)),
        depth_(task.depth) {}

  void fetch_share(std::ptrdiff_t row, std::ptrdiff_t rows) const {
    const std::ptrdiff_t tiles = (rows + tile_rows - 1) / tile_rows;
    const std::ptrdiff_t tile = row / tile_rows;
    const std::ptrdiff_t first = depth_ * tile / tiles / line * line;
    const std::ptrdiff_t end = tile + 1 == tiles ? depth_ : depth_ * (tile + 1) / tiles / line * line;
    for (std::ptrdiff_t j = 0; j < columns_; ++j) {
      for (std::ptrdiff_t l = first; l < end; l += line) {
        __builtin_prefetch(b_ + l + j * ldb_, 0, to_second_level);
      }
      if (row % line == 0) {
        __builtin_prefetch(c_ + row + j * ldc_, 1, to_second_level);
      }
    }
  }

 private:
  static constexpr std::ptrdiff_t line = 8;
  static constexpr int to_second_level = 2;
  const double* b_;
  const double* c_;
  std::ptrdiff_t ldb_, ldc_, columns_, depth_;
};

void update_row_block(const RowBlockUpdate& task) {
  const std::ptrdiff_t rest = task.depth % product_lanes;
  HWY_ALIGN double tail[chunk_columns * product_lanes] = {};
  const auto tail_of = [&](std::ptrdiff_t j_in_chunk)
                           HWY_ATTR { return rest != 0 ? tail + j_in_chunk * product_lanes : nullptr; };
  for (std::ptrdiff_t j0 = 0; j0 < task.columns; j0 += chunk_columns) {
    const std::ptrdiff_t columns = HWY_MIN(chunk_columns, task.columns - j0);
    for (std::ptrdiff_t j = 0; j < columns; ++j) {
      for (std::ptrdiff_t l = 0; l < rest; ++l) {
        tail[j * product_lanes + l] = task.b[(j0 + j) * task.ldb + task.depth - rest + l];
      }
    }
    const NextChunk next(task, j0 + columns);
    for (std::ptrdiff_t row = 0; row < task.rows; row += tile_rows) {
      next.fetch_share(row, task.rows);
      std::ptrdiff_t j = 0;
      for (; j + tile_columns <= columns; j += tile_columns) {
        update_tile_at<tile_columns>(task, row, j0 + j, tail_of(j));
      }
      for (; j < columns; ++j) {
        update_tile_at<1>(task, row, j0 + j, tail_of(j));
      }
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
