// SPDX-License-Identifier: MIT
// One tile of C in registers: a few rows times a few columns over the whole depth. Included by product_kernel.h only.
#pragma once

#include <hwy/cache_control.h>

#include <cstddef>

#include "dispatch/kernel_unit.h"
#include "matrix_kernels/product_kernel_table.h"
#include "matrix_kernels/product_rows_kernel.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// Twelve accumulators of 16 registers, or 24 of 32; twelve, sixteen or six rows a tile, so that the turned rows fit the
// first-level cache.
constexpr int accumulators = lanes == 8 ? 24 : 12;
constexpr int tile_vectors = lanes == 8 ? 2 : 3;
constexpr std::ptrdiff_t tile_rows = tile_vectors * lanes;
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

template <std::ptrdiff_t rows>
HWY_INLINE void fetch_column_of_c(const double* c) {
#pragma GCC unroll 4
  for (std::ptrdiff_t i = 0; i < rows; i += cache_line_doubles) {
    hwy::Prefetch(c + i);
  }
  hwy::Prefetch(c + rows - 1);
}

constexpr int first_level = 3;  // of the caches, as the compilers name them
constexpr int second_level = 2;

// Fetches the upcoming columns a few lines at a time: many at once would keep the loads of the product waiting.
template <int level>
class FetcherTo {
 public:
  FetcherTo(const UpcomingColumns& upcoming, std::ptrdiff_t groups) : upcoming_(upcoming) {
    if (upcoming.columns > 0) {
      const std::ptrdiff_t lines = upcoming.columns * ((upcoming.length - 1) / cache_line_doubles + 2);
      lines_per_group_ = (lines + groups - 1) / groups;
      begin_column();
    }
  }
  HWY_INLINE void step() {
    for (std::ptrdiff_t count = lines_per_group_; count > 0; --count) {
      __builtin_prefetch(HWY_MIN(line_, last_), 0, level);
      line_ += cache_line_doubles;
      if (line_ >= last_ + cache_line_doubles) {
        next_column();
      }
    }
  }

 private:
  void begin_column() {
    line_ = upcoming_.first;
    last_ = upcoming_.first + upcoming_.length - 1;
  }
  void next_column() {
    upcoming_.first += upcoming_.stride;
    --upcoming_.columns;
    if (upcoming_.columns > 0) {
      begin_column();
    } else {
      lines_per_group_ = 0;
    }
  }
  UpcomingColumns upcoming_;
  std::ptrdiff_t lines_per_group_ = 0;
  const double* line_ = nullptr;
  const double* last_ = nullptr;
};
using Fetcher = FetcherTo<second_level>;

// One tile of C.
struct TileUpdate {
  std::ptrdiff_t depth;
  const double* t;  // the tile T, or rows of A, side by side
  const double* b;
  const double* next_b;  // the columns that the next tile reads
  double* next_c;        // and those that it updates; null: they are on their way already
  std::ptrdiff_t ldb;
  double beta;
  double* c;
  std::ptrdiff_t ldc;
  std::ptrdiff_t rows;  // at most vectors·lanes
};

// Room for a tile whose rows do not fill its registers.
template <int vectors, int columns>
struct EdgeTile {
  HWY_ALIGN double x[columns * vectors * lanes];
};

template <int vectors, int columns>
HWY_INLINE void load_tile(const TileUpdate& task, EdgeTile<vectors, columns>& edge, Vector (&x)[columns][vectors]) {
  const Tag d;
  constexpr std::ptrdiff_t step = vectors * lanes;
  if (task.beta == 0.0) {
#pragma GCC unroll 24
    for (int at = 0; at < columns * vectors; ++at) {
      x[at / vectors][at % vectors] = hn::Zero(d);
    }
    return;
  }
  const double* start = task.c;
  std::ptrdiff_t stride = task.ldc;
  if (task.rows != step) {
    for (std::ptrdiff_t j = 0; j < columns; ++j) {
      for (std::ptrdiff_t i = 0; i < step; ++i) {
        edge.x[i + j * step] = i < task.rows ? task.c[i + j * task.ldc] : 0.0;
      }
    }
    start = edge.x;
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

template <int vectors, int columns>
HWY_INLINE void store_tile(const TileUpdate& task, EdgeTile<vectors, columns>& edge,
                           const Vector (&x)[columns][vectors]) {
  const Tag d;
  constexpr std::ptrdiff_t step = vectors * lanes;
  const bool whole = task.rows == step;
  double* const end = whole ? task.c : edge.x;
  const std::ptrdiff_t stride = whole ? task.ldc : step;
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
        task.c[i + j * task.ldc] = edge.x[i + j * step];
      }
    }
  }
}

// The products of one depth: t and b move on.
template <int vectors, int columns>
HWY_INLINE void add_products(const double*& t, std::ptrdiff_t t_stride, Columns<columns>& b,
                             Vector (&x)[columns][vectors]) {
  const Tag d;
  Vector tv[vectors];
#pragma GCC unroll 4
  for (int v = 0; v < vectors; ++v) {
    tv[v] = hn::LoadU(d, t + v * lanes);
    keep_in_register(tv[v]);
  }
#pragma GCC unroll 24
  for (int j = 0; j < columns; ++j) {
    Vector bv = hn::Set(d, *b[j]);
    if constexpr (vectors > 1) {
      keep_in_register(bv);
    }
#pragma GCC unroll 4
    for (int v = 0; v < vectors; ++v) {
      x[j][v] = hn::MulAdd(tv[v], bv, x[j][v]);
    }
  }
  b.advance(1);
  t += t_stride;
}

// Rows that stand t_stride apart, and everything in the cache: for products too small to stream.
template <int vectors, int columns>
void update_tile_at_hand(const TileUpdate& task, std::ptrdiff_t t_stride) {
  EdgeTile<vectors, columns> edge;
  Vector x[columns][vectors];
  load_tile(task, edge, x);
  const double* t = task.t;
  Columns<columns> b(task.b, task.ldb);
  for (std::ptrdiff_t left = task.depth; left > 0; --left) {
    add_products(t, t_stride, b, x);
  }
  store_tile(task, edge, x);
}

template <int vectors, int columns>
void update_tile(const TileUpdate& task, Fetcher& fetcher) {
  constexpr std::ptrdiff_t step = vectors * lanes;
  const std::ptrdiff_t ldc = task.ldc;
  EdgeTile<vectors, columns> edge;
  Vector x[columns][vectors];
  load_tile(task, edge, x);
  const double* t = task.t;
  Columns<columns> b(task.b, task.ldb);
  Columns<columns> fetch(task.b + fetch_distance, task.ldb);
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
    fetcher.step();
#pragma GCC unroll 1
    for (int l = 0; l < cache_line_doubles; ++l) {
      add_products(t, step, b, x);
    }
  }
  for (; left > 0; --left) {
    add_products(t, step, b, x);
  }
  store_tile(task, edge, x);
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
