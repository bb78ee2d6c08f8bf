// SPDX-License-Identifier: MIT
// The trailing triangle takes the updates of a panel of pivots: a(i,c) := (..(l(i,1)·g(c,1) + a(i,c)) + l(i,2)·g(c,2))
// + .. with g(c,p) = -l(c,p)·d(p). Tiles of strip_rows rows and tile_columns columns stay in registers for all pivots
// (the register tile of Goto and van de Geijn, ACM TOMS 34 (2008), with the depth loop innermost).
//
// The strips of rows end with the front's last row; the last one overlaps the strip before it. Rows of a strip that are
// not to be updated, because the strip before it did or because they lie above the diagonal, come first in it: they are
// computed along (their places lie within the front, in the column before) and not stored.
#pragma once

#include <cstdint>

#include "algorithms/easlff_nt_panel_kernel.h"
#include "dispatch/kernel_unit.h"
#include "hwy/cache_control.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr std::int64_t tile_columns = 4;
constexpr std::int64_t column_block = 64;  // columns whose factors are held together, a multiple of tile_columns

struct Tile {
  double* column[tile_columns];     // at the strip's first row
  std::int64_t skip[tile_columns];  // rows that are not stored
};

inline void store_after(std::int64_t skip, hn::Vec<FrontTag> value, double* to) {
  const FrontTag d;
  if (skip > 0) {
    value = hn::IfThenElse(hn::FirstN(d, static_cast<std::size_t>(skip)), hn::LoadU(d, to), value);
  }
  hn::StoreU(value, d, to);
}

template <bool Whole>
inline void update_tile(std::int64_t pivots, const double* strip, const double* factors, const Tile& tile) {
  const FrontTag d;
  hn::Vec<FrontTag> upper[tile_columns];
  hn::Vec<FrontTag> lower[tile_columns];
  for (std::int64_t c = 0; c < tile_columns; ++c) {
    upper[c] = hn::LoadU(d, tile.column[c]);
    lower[c] = hn::LoadU(d, tile.column[c] + lanes);
  }
  for (std::int64_t p = 0; p < pivots; ++p) {
    const auto l_upper = hn::Load(d, strip + p * strip_rows);
    const auto l_lower = hn::Load(d, strip + p * strip_rows + lanes);
    for (std::int64_t c = 0; c < tile_columns; ++c) {
      const auto g = hn::Set(d, factors[p * tile_columns + c]);
      upper[c] = hn::Add(hn::Mul(l_upper, g), upper[c]);
      lower[c] = hn::Add(hn::Mul(l_lower, g), lower[c]);
    }
  }
  for (std::int64_t c = 0; c < tile_columns; ++c) {
    if constexpr (Whole) {
      hn::StoreU(upper[c], d, tile.column[c]);
      hn::StoreU(lower[c], d, tile.column[c] + lanes);
    } else {
      // One column's rows that are not stored may be the last rows of the column before: look only now.
      if (tile.skip[c] < lanes) {
        store_after(tile.skip[c], upper[c], tile.column[c]);
      }
      if (tile.skip[c] < strip_rows) {
        store_after(tile.skip[c] - lanes, lower[c], tile.column[c] + lanes);
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

inline void prefetch_rows(const double* column) {
  constexpr std::int64_t line = 8;
  for (std::int64_t i = 0; i < strip_rows; i += line) {
    hwy::Prefetch(column + i);
  }
  hwy::Prefetch(column + strip_rows - 1);
}

// Rows row .. row+strip_rows-1 of the columns first .. first+columns-1; the first `done` rows are up to date.
inline void update_strip(const Front& f, std::int64_t pivots, const double* strip, const double* factors,
                         std::int64_t row, std::int64_t done, std::int64_t first, std::int64_t columns) {
  double no_column[strip_rows] = {};
  const std::int64_t end = first + columns < row + strip_rows ? first + columns : row + strip_rows;
  for (std::int64_t col = first; col < end; col += tile_columns) {
    Tile tile;
    for (std::int64_t q = 0; q < tile_columns; ++q) {
      const std::int64_t c = col + q;
      tile.column[q] = c < f.n ? f.column(c) + row : no_column;
      tile.skip[q] = c - row > done ? c - row : done;
      if (c + tile_columns < end) {
        prefetch_rows(f.column(c + tile_columns) + row);
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

// The front must have at least strip_rows rows.
inline void update_trailing_triangle(const Front& f, const Panel& panel) {
  alignas(64) double factors[column_block * panel_pivots];
  alignas(64) double strip[panel_pivots * strip_rows];
  for (std::int64_t first = panel.pivots; first < f.n; first += column_block) {
    const std::int64_t columns = f.n - first < column_block ? f.n - first : column_block;
    gather_factors(f, panel, first, columns, factors);
    for (std::int64_t next = first; next < f.n; next += strip_rows) {
      const std::int64_t row = next + strip_rows <= f.n ? next : f.n - strip_rows;
      load_strip(f, panel.pivots, row, strip);
      update_strip(f, panel.pivots, strip, factors, row, next - row, first, columns);
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
