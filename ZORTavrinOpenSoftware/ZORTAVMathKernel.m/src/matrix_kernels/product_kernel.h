// SPDX-License-Identifier: MIT
// The block product: C(i, j) := beta·C(i, j) + Σ a(i, l)·B(l, j). Included by product_kernel_unit.cpp only.
//
// Each element of C starts from beta·C(i, j) (or 0) and adds its products one by one in increasing l, with fused
// multiply-adds where the level has them: one chain, the same at every register width and for any division into blocks.
//
// The lanes of a register are consecutive rows. A few rows are first gathered into a tile T that the first-level cache
// holds, T(i, l) at i + l·(rows of the tile): packed rows, which run along the depth, are turned for it. Then the columns
// of B, read where they stand, stream past the tile. What a tile of C costs is spread over the whole depth, and the
// gathering over the columns of a chunk.
#pragma once

#include <cstddef>
#include <utility>

#include "dispatch/kernel_unit.h"
#include "matrix_kernels/product_kernel_table.h"
#include "matrix_kernels/product_panel_kernel.h"
#include "matrix_kernels/product_rows_kernel.h"
#include "matrix_kernels/product_tile_kernel.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// B up to this size leaves room in the first-level cache for what goes with it: nothing need be fetched ahead.
constexpr std::ptrdiff_t elements_at_hand = 2048;

// The columns that do not fill a tile.
template <int vectors, int... columns>
void update_last_columns(const TileUpdate& task, Fetcher& fetcher, std::ptrdiff_t count,
                         std::integer_sequence<int, columns...>) {
  using UpdateTile = void (*)(const TileUpdate&, Fetcher&);
  static constexpr UpdateTile update_of[] = {update_tile<vectors, columns + 1>...};
  update_of[count - 1](task, fetcher);
}

// Columns divided evenly into tiles.
template <int vectors, int... columns>
void update_tiles_at_hand(TileUpdate& task, std::ptrdiff_t t_stride, std::ptrdiff_t count,
                          std::integer_sequence<int, columns...>) {
  using UpdateTile = void (*)(const TileUpdate&, std::ptrdiff_t);
  static constexpr UpdateTile update_of[] = {update_tile_at_hand<vectors, columns + 1>...};
  constexpr auto widest = static_cast<std::ptrdiff_t>(sizeof...(columns));
  std::ptrdiff_t width = count;
  if (count > widest) {
    const std::ptrdiff_t tiles = (count + widest - 1) / widest;
    width = (count + tiles - 1) / tiles;
  }
  for (; count > width; count -= width) {
    update_of[width - 1](task, t_stride);
    task.b += width * task.ldb;
    task.c += width * task.ldc;
  }
  update_of[count - 1](task, t_stride);
}

// The rows of one tile of a product whose operands the first-level cache holds.
template <int vectors>
void update_rows_at_hand(const RowBlockUpdate& task, std::ptrdiff_t row, double* t) {
  const std::ptrdiff_t rows = task.rows - row;
  if constexpr (vectors > 1) {
    if (rows <= (vectors - 1) * lanes) {
      return update_rows_at_hand<vectors - 1>(task, row, t);
    }
  }
  constexpr std::ptrdiff_t step = vectors * lanes;
  TileUpdate tile{.depth = task.depth,
                  .t = task.a.first + row,
                  .b = task.b,
                  .next_b = task.b,
                  .next_c = nullptr,
                  .ldb = task.ldb,
                  .beta = task.beta,
                  .c = task.c + row,
                  .ldc = task.ldc,
                  .rows = HWY_MIN(step, rows)};
  std::ptrdiff_t t_stride = task.a.stride;
  if (task.a.along_depth || task.a.factor != 1.0 || rows < step) {
    gather_rows<vectors>(task.a.from(row), tile.rows, task.depth, t);
    tile.t = t;
    t_stride = step;
  }
  update_tiles_at_hand<vectors>(tile, t_stride, task.columns,
                                std::make_integer_sequence<int, accumulators / vectors>{});
}

// The rows of one tile over the columns of one chunk.
template <int vectors>
void update_rows(const RowBlockUpdate& task, double* t, Fetcher& fetcher) {
  if constexpr (vectors > 1) {
    if (task.rows <= (vectors - 1) * lanes) {
      return update_rows<vectors - 1>(task, t, fetcher);
    }
  }
  gather_rows<vectors>(task.a, task.rows, task.depth, t);
  constexpr int columns = accumulators / vectors;
  const auto tile = [&](std::ptrdiff_t j, std::ptrdiff_t next) __attribute__((always_inline)) {
    return TileUpdate{.depth = task.depth,
                      .t = t,
                      .b = task.b + j * task.ldb,
                      .next_b = task.b + next * task.ldb,
                      .next_c = task.c + next * task.ldc,
                      .ldb = task.ldb,
                      .beta = task.beta,
                      .c = task.c + j * task.ldc,
                      .ldc = task.ldc,
                      .rows = task.rows};
  };
  std::ptrdiff_t j = 0;
  for (; j + columns <= task.columns; j += columns) {
    update_tile<vectors, columns>(tile(j, j + 2 * columns <= task.columns ? j + columns : 0), fetcher);
  }
  if constexpr (columns > 1) {
    if (j < task.columns) {
      update_last_columns<vectors>(tile(j, j), fetcher, task.columns - j,
                                   std::make_integer_sequence<int, columns - 1>{});
    }
  }
}

void update_row_block(const RowBlockUpdate& task) {
  HWY_ALIGN double t[tile_rows * product_run];
  if (task.columns * task.depth <= elements_at_hand) {
    for (std::ptrdiff_t row = 0; row < task.rows; row += tile_rows) {
      update_rows_at_hand<tile_vectors>(task, row, t);
    }
    return;
  }
  constexpr std::ptrdiff_t tile_columns = accumulators / tile_vectors;
  const std::ptrdiff_t row_tiles = (task.rows + tile_rows - 1) / tile_rows;
  if (task.depth < shallow_depth) {
    double* const room = row_tiles * task.depth <= product_run ? t : task.room;
    if (room != nullptr) {
      update_panels(task, room);
      return;
    }
  }
  const std::ptrdiff_t groups = task.columns / tile_columns * row_tiles * (task.depth / cache_line_doubles);
  Fetcher fetcher(task.upcoming, HWY_MAX(1, groups));
  for (std::ptrdiff_t j0 = 0; j0 < task.columns; j0 += product_chunk_columns) {
    for (std::ptrdiff_t row = 0; row < task.rows; row += tile_rows) {
      update_rows<tile_vectors>({.rows = HWY_MIN(tile_rows, task.rows - row),
                                 .columns = HWY_MIN(product_chunk_columns, task.columns - j0),
                                 .depth = task.depth,
                                 .a = task.a.from(row),
                                 .room = nullptr,
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
