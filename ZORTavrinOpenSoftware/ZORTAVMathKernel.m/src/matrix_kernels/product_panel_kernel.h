// SPDX-License-Identifier: MIT
// The block product of small depth, where C is most of what moves. All rows of the block are turned once, and panels of
// a few columns, which the first-level cache holds, meet one tile of rows after the other: C is walked along its
// columns, and the next panel's part of it is on its way meanwhile. Included by product_kernel.h only.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "dispatch/kernel_unit.h"
#include "matrix_kernels/product_kernel_table.h"
#include "matrix_kernels/product_rows_kernel.h"
#include "matrix_kernels/product_tile_kernel.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr int panel_columns = accumulators / tile_vectors;
// Below this a tile is too short to announce the next one.
constexpr std::ptrdiff_t shallow_depth = panel_columns * cache_line_doubles;

// What the next panel needs.
struct PanelFetchers {
  FetcherTo<first_level> b;
  FetcherTo<first_level> c;
};

template <int vectors>
void update_panel_tile(const TileUpdate& task, PanelFetchers& fetchers) {
  EdgeTile<vectors, panel_columns> edge;
  Vector x[panel_columns][vectors];
  load_tile(task, edge, x);
  const double* t = task.t;
  Columns<panel_columns> b(task.b, task.ldb);
  std::ptrdiff_t left = task.depth;
  for (; left >= cache_line_doubles; left -= cache_line_doubles) {
    fetchers.b.step();
    fetchers.c.step();
#pragma GCC unroll 1
    for (int l = 0; l < cache_line_doubles; ++l) {
      add_products(t, vectors * lanes, b, x);
    }
  }
  for (; left > 0; --left) {
    add_products(t, vectors * lanes, b, x);
  }
  store_tile(task, edge, x);
}

template <int vectors, int... columns>
void update_last_panel_tile(const TileUpdate& task, std::ptrdiff_t count, std::integer_sequence<int, columns...>) {
  using UpdateTile = void (*)(const TileUpdate&, std::ptrdiff_t);
  static constexpr UpdateTile update_of[] = {update_tile_at_hand<vectors, columns + 1>...};
  update_of[count - 1](task, vectors * lanes);
}

// visit(registers that the rows of this tile fill, as a constant)
template <int vectors, class Visit>
HWY_INLINE void with_vectors(std::ptrdiff_t rows, const Visit& visit) {
  if constexpr (vectors > 1) {
    if (rows <= (vectors - 1) * lanes) {
      return with_vectors<vectors - 1>(rows, visit);
    }
  }
  visit(std::integral_constant<int, vectors>());
}

static_assert((product_row_block + tile_rows - 1) / tile_rows * tile_rows * (shallow_depth - 1) <=
              product_row_block * product_run);

void update_panels(const RowBlockUpdate& task, double* room) {
  for (std::ptrdiff_t row = 0; row < task.rows; row += tile_rows) {
    const std::ptrdiff_t rows = HWY_MIN(tile_rows, task.rows - row);
    with_vectors<tile_vectors>(rows, [&](auto vectors) {
      gather_rows<decltype(vectors)::value>(task.a.from(row), rows, task.depth, room + row * task.depth);
    });
  }
  const std::ptrdiff_t row_tiles = (task.rows + tile_rows - 1) / tile_rows;
  const std::ptrdiff_t groups = HWY_MAX(1, row_tiles * (task.depth / cache_line_doubles));
  for (std::ptrdiff_t j0 = 0; j0 < task.columns; j0 += panel_columns) {
    const std::ptrdiff_t columns = HWY_MIN(panel_columns, task.columns - j0);
    const std::ptrdiff_t next = j0 + columns;
    const std::ptrdiff_t coming = HWY_MIN(panel_columns, task.columns - next);
    const double* const b = task.b + j0 * task.ldb;
    double* const c = task.c + j0 * task.ldc;
    PanelFetchers fetchers{
        {{b + columns * task.ldb, task.ldb, coming, task.depth}, groups},
        {coming > 0 ? UpcomingColumns{c + columns * task.ldc, task.ldc, coming, task.rows} : task.upcoming, groups}};
    for (std::ptrdiff_t row = 0; row < task.rows; row += tile_rows) {
      const TileUpdate tile{.depth = task.depth,
                            .t = room + row * task.depth,
                            .b = b,
                            .next_b = nullptr,
                            .next_c = nullptr,
                            .ldb = task.ldb,
                            .beta = task.beta,
                            .c = c + row,
                            .ldc = task.ldc,
                            .rows = HWY_MIN(tile_rows, task.rows - row)};
      with_vectors<tile_vectors>(tile.rows, [&](auto vectors) {
        if (columns == panel_columns) {
          update_panel_tile<decltype(vectors)::value>(tile, fetchers);
        } else {
          update_last_panel_tile<decltype(vectors)::value>(tile, columns,
                                                           std::make_integer_sequence<int, panel_columns - 1>());
        }
      });
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
