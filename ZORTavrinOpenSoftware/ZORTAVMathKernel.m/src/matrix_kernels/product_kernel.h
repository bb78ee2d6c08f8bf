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
#include "matrix_kernels/product_rows_kernel.h"
#include "matrix_kernels/product_tile_kernel.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// The columns that do not fill a tile.
template <int vectors, Rows rows, int... columns>
void update_last_columns(const TileUpdate& task, Fetcher& fetcher, std::ptrdiff_t count,
                         std::integer_sequence<int, columns...>) {
  using UpdateTile = void (*)(const TileUpdate&, Fetcher&);
  static constexpr UpdateTile update_of[] = {update_tile<vectors, columns + 1, rows>...};
  update_of[count - 1](task, fetcher);
}

// A product of one tile of C, without what serves to stream many.
template <int vectors>
bool update_single_tile(const RowBlockUpdate& task, double* t) {
  if constexpr (vectors > 1) {
    if (task.rows <= (vectors - 1) * lanes) {
      return update_single_tile<vectors - 1>(task, t);
    }
  }
  constexpr int columns = accumulators / vectors;
  if (task.columns > columns) {
    return false;
  }
  Fetcher fetcher({}, 1);
  TileUpdate tile{.depth = task.depth,
                  .t = t,
                  .t_stride = vectors * lanes,
                  .factor = task.a.factor,
                  .b = task.b,
                  .next_b = task.b,
                  .next_c = nullptr,
                  .ldb = task.ldb,
                  .beta = task.beta,
                  .c = task.c,
                  .ldc = task.ldc,
                  .rows = task.rows};
  if (!task.a.along_depth && task.rows == vectors * lanes) {
    tile.t = task.a.first;
    tile.t_stride = task.a.stride;
    update_last_columns<vectors, Rows::in_place>(tile, fetcher, task.columns,
                                                 std::make_integer_sequence<int, columns>{});
  } else {
    gather_rows<vectors>(task.a, task.rows, task.depth, t);
    update_last_columns<vectors, Rows::gathered>(tile, fetcher, task.columns,
                                                 std::make_integer_sequence<int, columns>{});
  }
  return true;
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
  // Where the depth is small, a tile is too short to announce the next one: C is fetched from further ahead.
  const bool announces = task.depth >= columns * cache_line_doubles;
  const bool fetches = !announces && task.columns > columns;
  const std::ptrdiff_t ahead = fetches ? (1 + fetch_distance / task.depth) * columns : 0;
  const auto tile = [&](std::ptrdiff_t j, std::ptrdiff_t next) __attribute__((always_inline)) {
    return TileUpdate{.depth = task.depth,
                      .t = t,
                      .t_stride = vectors * lanes,
                      .factor = 1.0,
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
    if (fetches) {
      for (std::ptrdiff_t next = j + ahead; next < HWY_MIN(j + ahead + columns, task.columns); ++next) {
        fetch_column_of_c<vectors * lanes>(task.c + next * task.ldc);
      }
    }
    update_tile<vectors, columns, Rows::gathered>(tile(j, j + 2 * columns <= task.columns ? j + columns : 0), fetcher);
  }
  if constexpr (columns > 1) {
    if (j < task.columns) {
      update_last_columns<vectors, Rows::gathered>(tile(j, j), fetcher, task.columns - j,
                                                   std::make_integer_sequence<int, columns - 1>{});
    }
  }
}

void update_row_block(const RowBlockUpdate& task) {
  HWY_ALIGN double t[tile_rows * product_run];
  if (task.rows <= tile_rows && update_single_tile<tile_vectors>(task, t)) {
    return;
  }
  constexpr std::ptrdiff_t tile_columns = accumulators / tile_vectors;
  const std::ptrdiff_t row_tiles = (task.rows + tile_rows - 1) / tile_rows;
  Fetcher fetcher(task.upcoming,
                  HWY_MAX(1, task.columns / tile_columns * row_tiles * (task.depth / cache_line_doubles)));
  for (std::ptrdiff_t j0 = 0; j0 < task.columns; j0 += product_chunk_columns) {
    for (std::ptrdiff_t row = 0; row < task.rows; row += tile_rows) {
      update_rows<tile_vectors>({.rows = HWY_MIN(tile_rows, task.rows - row),
                                 .columns = HWY_MIN(product_chunk_columns, task.columns - j0),
                                 .depth = task.depth,
                                 .a = task.a.from(row),
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
