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

#include <hwy/cache_control.h>

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
// The packed rows of the next tile are fetched while a tile is computed, each pass its share of them: left to the loads
// themselves they would come from the second-level cache in bursts that outrun it.
constexpr int fetched_rows = HWY_MAX(1, tile_rows* tile_columns / (chunk_columns * passes));

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

// x in lane 0, zeros elsewhere.
template <class D>
HWY_INLINE hn::Vec<D> first_lane(D d, double x) {
  const hn::Vec128<double> low{_mm_set_sd(x)};
  if constexpr (lanes == 2) {
    return low;
  } else if constexpr (lanes == 4) {
    return hn::ZeroExtendVector(d, low);
  } else {
    const hn::Half<D> half;
    return hn::ZeroExtendVector(d, hn::ZeroExtendVector(half, low));
  }
}

template <bool given>
struct Choice {
  static constexpr bool value = given;
};

// Without this the compiler may read a value of B from memory again for every row: the loads, not the arithmetic, would
// then set the pace.
HWY_INLINE void keep_in_register(Vector& x) {
  __asm__("" : "+v"(x.raw));
}

// A few columns of B, regrouped so that a tile reads them as one aligned stream: tile after tile, eight depths after
// eight depths, column after column. The last group is padded with zeros.
struct Chunk {
  HWY_ALIGN double value[chunk_columns * product_run];
};

// What one tile reads of B: its part of the chunk, and the columns themselves while the chunk is still to be filled.
struct TileColumns {
  double* chunk;
  const double* b;
  std::ptrdiff_t ldb;
};

// One tile of C, starting from C or from 0, over `depth` products. The first row tile of a chunk reads B in place and
// leaves it regrouped in the chunk, so that the copying hides behind the arithmetic.
template <int rows, int columns, bool accumulate, bool fill>
HWY_INLINE void update_tile(std::ptrdiff_t depth, const double* HWY_RESTRICT p, const TileColumns& of_b,
                            const double* HWY_RESTRICT next_p, double* HWY_RESTRICT c, std::ptrdiff_t ldc) {
  const Tag d;
  constexpr std::ptrdiff_t step = columns * product_lanes;
  const std::ptrdiff_t whole_groups = depth / product_lanes;
  const std::ptrdiff_t rest = depth % product_lanes;
  if (fill && rest != 0) {
    for (std::ptrdiff_t at = 0; at < step; ++at) {
      const std::ptrdiff_t lane = at % product_lanes;
      of_b.chunk[whole_groups * step + at] =
          lane < rest ? of_b.b[whole_groups * product_lanes + lane + at / product_lanes * of_b.ldb] : 0.0;
    }
  }
  Vector sum[columns][passes][tile_rows];
#pragma GCC unroll 4
  for (int pass = 0; pass < passes; ++pass) {
    Vector x[columns][rows];
#pragma GCC unroll 8
    for (int j = 0; j < columns; ++j) {
#pragma GCC unroll 4
      for (int i = 0; i < rows; ++i) {
        x[j][i] = accumulate && pass == 0 ? first_lane(d, c[i + j * ldc]) : hn::Zero(d);
      }
    }
    const double* HWY_RESTRICT p_at = p + pass * lanes;
    double* chunk_at = of_b.chunk + pass * lanes;
    const double* b_at = of_b.b + pass * lanes;
    const double* fetch_at = next_p + pass * fetched_rows % tile_rows * product_run;
    const auto add_group = [&](const auto& load) __attribute__((always_inline)) {
      Vector bv[columns];
#pragma GCC unroll 8
      for (int j = 0; j < columns; ++j) {
        bv[j] = load(j);
        keep_in_register(bv[j]);
      }
#pragma GCC unroll 4
      for (int i = 0; i < rows; ++i) {
        const Vector pv = hn::Load(d, p_at + i * product_run);
#pragma GCC unroll 8
        for (int j = 0; j < columns; ++j) {
          x[j][i] = hn::MulAdd(pv, bv[j], x[j][i]);
        }
      }
#pragma GCC unroll 4
      for (int i = 0; i < fetched_rows; ++i) {
        hwy::Prefetch(fetch_at + i * product_run);
      }
      fetch_at += product_lanes;
      p_at += product_lanes;
      b_at += product_lanes;
      chunk_at += step;
    };
    const auto from_chunk = [&](int j) __attribute__((always_inline)) {
      return hn::Load(d, chunk_at + j * product_lanes);
    };
    const auto from_b = [&](int j) __attribute__((always_inline)) {
      const Vector value = hn::LoadU(d, b_at + j * of_b.ldb);
      hn::Store(value, d, chunk_at + j * product_lanes);
      return value;
    };
    for (std::ptrdiff_t group = 0; group < whole_groups; ++group) {
      if constexpr (fill) {
        add_group(from_b);
      } else {
        add_group(from_chunk);
      }
    }
    if (rest != 0) {
      add_group(from_chunk);
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

template <int rows, int columns>
HWY_INLINE void update_tile_at(const RowBlockUpdate& task, std::ptrdiff_t row, std::ptrdiff_t j,
                               const TileColumns& of_b, const double* next_p) {
  const double* const p = task.p + row * product_run;
  double* const c = task.c + row + j * task.ldc;
  const auto update = [&](auto accumulate, auto fill) __attribute__((always_inline)) {
    update_tile<rows, columns, accumulate.value, fill.value>(task.depth, p, of_b, next_p, c, task.ldc);
  };
  constexpr Choice<true> yes;
  constexpr Choice<false> no;
  if (row == 0) {
    task.beta == 0.0 ? update(no, yes) : update(yes, yes);
  } else {
    task.beta == 0.0 ? update(no, no) : update(yes, no);
  }
}

// The columns of one tile, `columns` or fewer.
template <int rows, int columns = tile_columns>
HWY_INLINE void update_columns(const RowBlockUpdate& task, std::ptrdiff_t row, std::ptrdiff_t j, std::ptrdiff_t count,
                               const TileColumns& of_b, const double* next_p) {
  if constexpr (columns > 1) {
    if (count < columns) {
      return update_columns<rows, columns - 1>(task, row, j, count, of_b, next_p);
    }
  }
  update_tile_at<rows, columns>(task, row, j, of_b, next_p);
}

// Brings the next columns of B and the next tiles of C nearer while the current chunk is computed: each row tile
// fetches its share of their cache lines.
void fetch_next_chunk(const RowBlockUpdate& task, std::ptrdiff_t j0, std::ptrdiff_t row) {
  constexpr std::ptrdiff_t line = 8;
  const std::ptrdiff_t columns = HWY_MIN(chunk_columns, task.columns - j0);
  // Twenty row tiles share 31 lines of a column: two lines each.
  const std::ptrdiff_t first = row / tile_rows * 2 * line;
  for (std::ptrdiff_t j = j0; j < j0 + columns; ++j) {
    const double* const b = task.b + j * task.ldb;
    for (std::ptrdiff_t l = first; l < HWY_MIN(first + 2 * line, task.depth); l += line) {
      hwy::Prefetch(b + l);
    }
    hwy::Prefetch(task.c + row + j * task.ldc);
  }
}

// C := beta·C for the rows of the block and `columns` columns.
void scale_columns(const RowBlockUpdate& task, std::ptrdiff_t j0, std::ptrdiff_t columns) {
  for (std::ptrdiff_t j = j0; j < j0 + columns; ++j) {
    for (std::ptrdiff_t i = 0; i < task.rows; ++i) {
      task.c[i + j * task.ldc] *= task.beta;
    }
  }
}

void update_row_block(const RowBlockUpdate& task) {
  Chunk chunk;
  for (std::ptrdiff_t j0 = 0; j0 < task.columns; j0 += chunk_columns) {
    const std::ptrdiff_t columns = HWY_MIN(chunk_columns, task.columns - j0);
    if (task.beta != 0.0 && task.beta != 1.0) {
      scale_columns(task, j0, columns);
    }
    for (std::ptrdiff_t row = 0; row < task.rows; row += tile_rows) {
      const std::ptrdiff_t next_row = row + tile_rows < task.rows ? row + tile_rows : 0;
      fetch_next_chunk(task, j0 + columns, row);
      for (std::ptrdiff_t j = 0; j < columns; j += tile_columns) {
        const std::ptrdiff_t tile = j / tile_columns;
        const TileColumns of_b{chunk.value + tile * tile_columns * product_run, task.b + (j0 + j) * task.ldb, task.ldb};
        const double* const next_p = task.p + (next_row + tile * passes * fetched_rows % tile_rows) * product_run;
        switch (task.rows - row) {
          case 1:
            update_columns<1>(task, row, j0 + j, columns - j, of_b, next_p);
            break;
          case 2:
            update_columns<2>(task, row, j0 + j, columns - j, of_b, next_p);
            break;
          case 3:
            update_columns<3>(task, row, j0 + j, columns - j, of_b, next_p);
            break;
          default:
            update_columns<tile_rows>(task, row, j0 + j, columns - j, of_b, next_p);
        }
      }
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
