// SPDX-License-Identifier: MIT
// The trailing triangle takes the updates of a panel of pivots: a(i,c) := (..(l(i,1)·g(c,1) + a(i,c)) + l(i,2)·g(c,2))
// + .. with g(c,p) = -l(c,p)·d(p). Tiles of tile_rows rows and tile_columns columns stay in registers for all pivots
// (the register tile of Goto and van de Geijn, ACM TOMS 34 (2008), with the depth loop innermost).
//
// The strips of rows end with the front's last row; the last one overlaps the strip before it. Rows of a strip that are
// not to be updated, because the strip before it did or because they lie above the diagonal, come first in it: they are
// computed along (their places lie within the front, in the column before) and not stored.
#pragma once

#include <hwy/cache_control.h>

#include <cstdint>

#include "algorithms/easlff_nt_panel_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// The tile that keeps the multipliers and adders busiest with the registers of the level, measured on Zen 4.
constexpr int tile_vectors = lanes == 8 ? 1 : 2;
constexpr std::int64_t tile_columns = lanes == 8 ? 12 : lanes == 4 ? 6 : 4;
constexpr std::int64_t tile_rows = tile_vectors * lanes;
static_assert(tile_rows <= panel_rows);

// Columns whose factors are held together.
constexpr std::int64_t column_block = 192;
static_assert(column_block % tile_columns == 0);

struct Tile {
  double* column[tile_columns];     // at the strip's first row
  std::int64_t skip[tile_columns];  // rows that are not stored
};

HWY_INLINE void store_after(std::int64_t skip, hn::Vec<FrontTag> value, double* to) {
  const FrontTag d;
  if (skip > 0) {
    value = hn::IfThenElse(hn::FirstN(d, static_cast<std::size_t>(skip)), hn::LoadU(d, to), value);
  }
  hn::StoreU(value, d, to);
}

template <bool Whole>
HWY_NOINLINE void update_tile(std::int64_t pivots, const double* strip, const double* factors, const Tile& tile) {
  const FrontTag d;
  hn::Vec<FrontTag> a[tile_columns][tile_vectors];
  for (std::int64_t c = 0; c < tile_columns; ++c) {
    for (int v = 0; v < tile_vectors; ++v) {
      a[c][v] = hn::LoadU(d, tile.column[c] + v * lanes);
    }
  }
  for (std::int64_t p = 0; p < pivots; ++p) {
    hn::Vec<FrontTag> l[tile_vectors];
    for (int v = 0; v < tile_vectors; ++v) {
      l[v] = hn::Load(d, strip + p * tile_rows + v * lanes);
    }
    for (std::int64_t c = 0; c < tile_columns; ++c) {
      const auto g = hn::Set(d, factors[p * tile_columns + c]);
      for (int v = 0; v < tile_vectors; ++v) {
        a[c][v] = hn::Add(hn::Mul(l[v], g), a[c][v]);
      }
    }
  }
  for (std::int64_t c = 0; c < tile_columns; ++c) {
    for (int v = 0; v < tile_vectors; ++v) {
      if constexpr (Whole) {
        hn::StoreU(a[c][v], d, tile.column[c] + v * lanes);
      } else if (tile.skip[c] < (v + 1) * lanes) {
        // The rows not stored may be the last rows of the column before: they are looked at only now.
        store_after(tile.skip[c] - v * lanes, a[c][v], tile.column[c] + v * lanes);
      }
    }
  }
}

// factors[tile][p][c] of the columns first .. first+columns-1; columns that the last tile has in excess are zero.
inline void gather_factors(const Front& f, const Panel& panel, std::int64_t first, std::int64_t columns,
                           double* factors) {
  for (std::int64_t p = 0; p < panel.pivots; ++p) {
    const double pivot = panel.head[p / block_pivots].d[p % block_pivots];
    const double* const l = f.column(p) + first;
    for (std::int64_t c = 0; c < columns; c += tile_columns) {
      double* const to = factors + c * panel.pivots + p * tile_columns;
      for (std::int64_t q = 0; q < tile_columns; ++q) {
        to[q] = c + q < columns ? -l[c + q] * pivot : 0;
      }
    }
  }
}

// Rows row .. row+tile_rows-1 of the columns first .. first+columns-1; the first `done` rows are up to date.
inline void update_strip(const Front& f, std::int64_t pivots, const double* strip, const double* factors,
                         std::int64_t row, std::int64_t done, std::int64_t first, std::int64_t columns) {
  double no_column[tile_rows] = {};
  const std::int64_t end = first + columns < row + tile_rows ? first + columns : row + tile_rows;
  for (std::int64_t col = first; col < end; col += tile_columns) {
    Tile tile;
    for (std::int64_t q = 0; q < tile_columns; ++q) {
      const std::int64_t c = col + q;
      tile.column[q] = c < f.n ? f.column(c) + row : no_column;
      tile.skip[q] = c - row > done ? c - row : done;
      if (c + tile_columns < end) {
        const double* const next = f.column(c + tile_columns) + row;
        hwy::Prefetch(next);
        hwy::Prefetch(next + tile_rows - 1);
      }
    }
    const double* const tile_factors = factors + (col - first) * pivots;
    if (done == 0 && col + tile_columns - 1 <= row) {
      update_tile<true>(pivots, strip, tile_factors, tile);
    } else {
      update_tile<false>(pivots, strip, tile_factors, tile);
    }
  }
}

// The front must have at least tile_rows rows.
inline void update_trailing_triangle(const Front& f, const Panel& panel) {
  alignas(64) double factors[column_block * panel_pivots];
  alignas(64) double strip[panel_pivots * tile_rows];
  for (std::int64_t first = panel.pivots; first < f.n; first += column_block) {
    const std::int64_t columns = f.n - first < column_block ? f.n - first : column_block;
    gather_factors(f, panel, first, columns, factors);
    for (std::int64_t next = first; next < f.n; next += tile_rows) {
      const std::int64_t row = next + tile_rows <= f.n ? next : f.n - tile_rows;
      load_strip<tile_vectors>(f, panel.pivots, row, strip);
      update_strip(f, panel.pivots, strip, factors, row, next - row, first, columns);
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
