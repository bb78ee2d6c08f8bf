// SPDX-License-Identifier: MIT
// The block product: C(i, j) := beta·C(i, j) + Σ P(l, i)·B(l, j). Included by product_kernel_unit.cpp only.
//
// Each element of C starts from beta·C(i, j) (or 0) and adds its products one by one in increasing l, with fused
// multiply-adds where the level has them: one chain, the same at every register width and for any division into blocks.
//
// The lanes of a register are consecutive rows. The packed rows P run along the depth, so a few of them are first
// turned into a tile T that the first-level cache holds, T(i, l) at i + l·(rows of the tile); then the columns of B,
// read where they stand, stream past it. What a tile of C costs is spread over the whole depth, and turning the rows
// over all columns of the pass.
#pragma once

#include <hwy/cache_control.h>

#include <cstddef>

#include "dispatch/kernel_unit.h"
#include "matrix_kernels/product_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

using Tag = hn::CappedTag<double, 8>;
using Vector = hn::Vec<Tag>;
constexpr std::ptrdiff_t lanes = sizeof(Vector) / sizeof(double);

// Twelve accumulators of 16 registers, or 24 of 32; twelve, sixteen or six rows a tile, so that the turned rows fit the
// first-level cache.
constexpr int accumulators = lanes == 8 ? 24 : 12;
constexpr int tile_vectors = lanes == 8 ? 2 : 3;
constexpr std::ptrdiff_t tile_rows = tile_vectors * lanes;
// Columns of B that stay in the second-level cache while the row tiles of a block pass.
constexpr std::ptrdiff_t chunk_columns = 192;
constexpr std::ptrdiff_t cache_line_doubles = 8;
// B is fetched this many depths ahead; towards its end a tile fetches the first depths of the next one.
constexpr std::ptrdiff_t fetch_distance = 8 * cache_line_doubles;

// Without this the compiler may read a value from memory again for every use: the loads, not the arithmetic, would
// then set the pace.
HWY_INLINE void keep_in_register(Vector& x) {
  __asm__("" : "+v"(x.raw));
}

// `columns` neighbouring columns by few registers: every fourth one has a pointer of its own, and the others are
// reached from it by multiples of the leading dimension. Left to itself the compiler gives each column a pointer and
// runs out.
template <int columns>
class Columns {
 public:
  Columns(const double* first, std::ptrdiff_t ld) : ld_(ld) {
    for (int group = 0; group < groups; ++group) {
      first_[group] = first + 4 * group * ld;
    }
  }
  HWY_INLINE const double* operator[](int j) const { return first_[j / 4] + j % 4 * ld_; }
  HWY_INLINE void advance(std::ptrdiff_t rows) {
#pragma GCC unroll 6
    for (int group = 0; group < groups; ++group) {
      first_[group] += rows;
      __asm__("" : "+r"(first_[group]));
    }
  }

 private:
  static constexpr int groups = (columns + 3) / 4;
  const double* first_[groups];
  std::ptrdiff_t ld_;
};

// Pairs of doubles from columns 0, 2, 4 ... of a.
template <class D>
HWY_INLINE hn::Vec<D> load_pairs(D d, const double* a, std::ptrdiff_t stride) {
  if constexpr (sizeof(hn::Vec<D>) == 2 * sizeof(double)) {
    return hn::LoadU(d, a);
  } else {
    const hn::Half<D> half;
    constexpr std::ptrdiff_t columns = sizeof(hn::Vec<D>) / sizeof(double);
    return hn::Combine(d, load_pairs(half, a + columns / 2 * stride, stride), load_pairs(half, a, stride));
  }
}

// T(i, l) := P(l, i) for `rows` rows; rows beyond up to whole registers become zeros.
template <int vectors>
void turn_rows(const double* p, std::ptrdiff_t rows, std::ptrdiff_t depth, double* t) {
  const Tag d;
  constexpr std::ptrdiff_t step = vectors * lanes;
  for (int v = 0; v < vectors; ++v) {
    const double* const pv = p + v * lanes * product_run;
    double* const tv = t + v * lanes;
    std::ptrdiff_t l = 0;
    if (rows >= (v + 1) * lanes) {
      for (; l + 2 <= depth; l += 2) {
        const auto even = load_pairs(d, pv + l, product_run);
        const auto odd = load_pairs(d, pv + l + product_run, product_run);
        hn::Store(hn::InterleaveLower(d, even, odd), d, tv + l * step);
        hn::Store(hn::InterleaveUpper(d, even, odd), d, tv + (l + 1) * step);
      }
    }
    for (; l < depth; ++l) {
      for (std::ptrdiff_t i = 0; i < lanes; ++i) {
        tv[l * step + i] = v * lanes + i < rows ? pv[l + i * product_run] : 0.0;
      }
    }
  }
}

template <std::ptrdiff_t rows>
HWY_INLINE void fetch_column_of_c(const double* c) {
#pragma GCC unroll 4
  for (std::ptrdiff_t i = 0; i < rows; i += cache_line_doubles) {
    hwy::Prefetch(c + i);
  }
  hwy::Prefetch(c + rows - 1);
}

// One tile of C.
struct TileUpdate {
  std::ptrdiff_t depth;
  const double* t;
  const double* b;
  const double* next_b;  // the columns that the next tile reads
  double* next_c;        // and those that it updates; null: they are on their way already
  std::ptrdiff_t ldb;
  double beta;
  double* c;
  std::ptrdiff_t ldc;
  std::ptrdiff_t rows;  // at most vectors·lanes
};

template <int vectors, int columns>
HWY_INLINE void update_tile(const TileUpdate& task) {
  const Tag d;
  constexpr std::ptrdiff_t step = vectors * lanes;
  const std::ptrdiff_t ldc = task.ldc;
  double* const c = task.c;
  const bool whole = task.rows == step;
  HWY_ALIGN double edge[columns * step];
  Vector x[columns][vectors];
  if (task.beta == 0.0) {
#pragma GCC unroll 24
    for (int at = 0; at < columns * vectors; ++at) {
      x[at / vectors][at % vectors] = hn::Zero(d);
    }
  } else {
    const double* start = c;
    std::ptrdiff_t stride = ldc;
    if (!whole) {
      for (std::ptrdiff_t j = 0; j < columns; ++j) {
        for (std::ptrdiff_t i = 0; i < step; ++i) {
          edge[i + j * step] = i < task.rows ? c[i + j * ldc] : 0.0;
        }
      }
      start = edge;
      stride = step;
    }
    const Vector beta = hn::Set(d, task.beta);
#pragma GCC unroll 24
    for (int j = 0; j < columns; ++j) {
#pragma GCC unroll 4
      for (int v = 0; v < vectors; ++v) {
        x[j][v] = hn::Mul(beta, hn::LoadU(d, start + v * lanes + j * stride));
      }
    }
  }
  const double* HWY_RESTRICT t = task.t;
  Columns<columns> b(task.b, task.ldb);
  Columns<columns> fetch(task.b + fetch_distance, task.ldb);
  const auto add_products = [&]() __attribute__((always_inline)) {
    Vector tv[vectors];
#pragma GCC unroll 4
    for (int v = 0; v < vectors; ++v) {
      tv[v] = hn::Load(d, t + v * lanes);
      keep_in_register(tv[v]);
    }
#pragma GCC unroll 24
    for (int j = 0; j < columns; ++j) {
      Vector bv = hn::Set(d, *b[j]);
      keep_in_register(bv);
#pragma GCC unroll 4
      for (int v = 0; v < vectors; ++v) {
        x[j][v] = hn::MulAdd(tv[v], bv, x[j][v]);
      }
    }
    b.advance(1);
    t += step;
  };
  std::ptrdiff_t left = task.depth;
  const std::ptrdiff_t turning = fetch_distance + left % cache_line_doubles + cache_line_doubles;
  const std::ptrdiff_t to_next = task.next_b - fetch[0] - (left - turning);
  // The next tile is announced column by column: all at once its pages would keep this tile's loads waiting.
  const double* coming_b = task.next_b;
  const double* coming_c = task.next_c;
  int to_announce = coming_c == nullptr ? 0 : columns;
  for (; left >= cache_line_doubles; left -= cache_line_doubles) {
    if (to_announce > 0) {
      --to_announce;
      hwy::Prefetch(coming_b);
      fetch_column_of_c<step>(coming_c);
      coming_b += task.ldb;
      coming_c += ldc;
    }
#pragma GCC unroll 24
    for (int j = 0; j < columns; ++j) {
      hwy::Prefetch(fetch[j]);
    }
    fetch.advance(left == turning ? to_next : cache_line_doubles);
#pragma GCC unroll 1
    for (int l = 0; l < cache_line_doubles; ++l) {
      add_products();
    }
  }
  for (; left > 0; --left) {
    add_products();
  }
  double* const end = whole ? c : edge;
  const std::ptrdiff_t stride = whole ? ldc : step;
#pragma GCC unroll 24
  for (int j = 0; j < columns; ++j) {
#pragma GCC unroll 4
    for (int v = 0; v < vectors; ++v) {
      hn::StoreU(x[j][v], d, end + v * lanes + j * stride);
    }
  }
  if (!whole) {
    for (std::ptrdiff_t j = 0; j < columns; ++j) {
      for (std::ptrdiff_t i = 0; i < task.rows; ++i) {
        c[i + j * ldc] = edge[i + j * step];
      }
    }
  }
}

// Fetches the upcoming columns bit by bit.
class Fetcher {
 public:
  Fetcher(const UpcomingColumns& upcoming, std::ptrdiff_t steps)
      : left_(upcoming), columns_per_step_((upcoming.columns + steps - 1) / steps) {}
  void step() {
    for (std::ptrdiff_t count = HWY_MIN(columns_per_step_, left_.columns); count > 0; --count) {
      for (std::ptrdiff_t i = 0; i < left_.length; i += cache_line_doubles) {
        __builtin_prefetch(left_.first + i, 0, second_level);
      }
      __builtin_prefetch(left_.first + left_.length - 1, 0, second_level);
      left_.first += left_.stride;
      --left_.columns;
    }
  }

 private:
  static constexpr int second_level = 2;
  UpcomingColumns left_;
  std::ptrdiff_t columns_per_step_;
};

// The columns that do not fill a tile.
template <int vectors, int columns>
void update_last_columns(const TileUpdate& task, std::ptrdiff_t count) {
  if constexpr (columns > 1) {
    if (count < columns) {
      return update_last_columns<vectors, columns - 1>(task, count);
    }
  }
  update_tile<vectors, columns>(task);
}

// The rows of one tile over the columns of one chunk.
template <int vectors>
void update_rows(const RowBlockUpdate& task, double* t, Fetcher& fetcher) {
  if constexpr (vectors > 1) {
    if (task.rows <= (vectors - 1) * lanes) {
      return update_rows<vectors - 1>(task, t, fetcher);
    }
  }
  turn_rows<vectors>(task.p, task.rows, task.depth, t);
  constexpr int columns = accumulators / vectors;
  // Where the depth is small, a tile is too short to announce the next one: C is fetched from further ahead.
  const bool announces = task.depth >= columns * cache_line_doubles;
  const std::ptrdiff_t ahead = (1 + fetch_distance / task.depth) * columns;
  const auto tile = [&](std::ptrdiff_t j, std::ptrdiff_t next) __attribute__((always_inline)) {
    return TileUpdate{.depth = task.depth,
                      .t = t,
                      .b = task.b + j * task.ldb,
                      .next_b = task.b + next * task.ldb,
                      .next_c = announces ? task.c + next * task.ldc : nullptr,
                      .ldb = task.ldb,
                      .beta = task.beta,
                      .c = task.c + j * task.ldc,
                      .ldc = task.ldc,
                      .rows = task.rows};
  };
  std::ptrdiff_t j = 0;
  for (; j + columns <= task.columns; j += columns) {
    if (!announces) {
      for (std::ptrdiff_t next = j + ahead; next < HWY_MIN(j + ahead + columns, task.columns); ++next) {
        fetch_column_of_c<vectors * lanes>(task.c + next * task.ldc);
      }
    }
    fetcher.step();
    update_tile<vectors, columns>(tile(j, j + 2 * columns <= task.columns ? j + columns : 0));
  }
  if constexpr (columns > 1) {
    if (j < task.columns) {
      update_last_columns<vectors, columns - 1>(tile(j, j), task.columns - j);
    }
  }
}

void update_row_block(const RowBlockUpdate& task) {
  HWY_ALIGN double t[tile_rows * product_run];
  constexpr std::ptrdiff_t tile_columns = accumulators / tile_vectors;
  const std::ptrdiff_t row_tiles = (task.rows + tile_rows - 1) / tile_rows;
  Fetcher fetcher(task.upcoming, HWY_MAX(1, task.columns / tile_columns * row_tiles));
  for (std::ptrdiff_t j0 = 0; j0 < task.columns; j0 += chunk_columns) {
    for (std::ptrdiff_t row = 0; row < task.rows; row += tile_rows) {
      update_rows<tile_vectors>({.rows = HWY_MIN(tile_rows, task.rows - row),
                                 .columns = HWY_MIN(chunk_columns, task.columns - j0),
                                 .depth = task.depth,
                                 .p = task.p + row * product_run,
                                 .b = task.b + j0 * task.ldb,
                                 .ldb = task.ldb,
                                 .beta = task.beta,
                                 .c = task.c + row + j0 * task.ldc,
                                 .ldc = task.ldc,
                                 .upcoming = {}},
                                t, fetcher);
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
