// SPDX-License-Identifier: MIT
// The trailing triangle takes the updates of a panel of pivots: a(i,c) := (..(l(i,1)·g(c,1) + a(i,c)) + l(i,2)·g(c,2))
// + .. with g(c,p) = -l(c,p)·d(p). Tiles of strip_rows rows and tile_columns columns stay in registers for all pivots
// (the register tile of Goto and van de Geijn, ACM TOMS 34 (2008), with the depth loop innermost).
#pragma once

#include <cstdint>
#include <cstring>

#include "algorithms/easlff_nt_panel_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr std::int64_t tile_columns = 4;
constexpr std::int64_t column_block = 64;  // columns whose factors are held together, a multiple of tile_columns

// One tile: column[c][i] for i < strip_rows.
inline void update_tile(std::int64_t pivots, const double* strip, const double* factors, double* const* column) {
  const FrontTag d;
  hn::Vec<FrontTag> upper[tile_columns];
  hn::Vec<FrontTag> lower[tile_columns];
  for (std::int64_t c = 0; c < tile_columns; ++c) {
    upper[c] = hn::LoadU(d, column[c]);
    lower[c] = hn::LoadU(d, column[c] + lanes);
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
    hn::StoreU(upper[c], d, column[c]);
    hn::StoreU(lower[c], d, column[c] + lanes);
  }
}

// A tile that the diagonal or the end of the front cuts: the entries that exist pass through a whole tile.
inline void update_cut_tile(const Front& f, std::int64_t pivots, const double* strip, const double* factors,
                            std::int64_t row, std::int64_t col) {
  alignas(64) double tile[tile_columns * strip_rows] = {};
  double* column[tile_columns];
  const std::int64_t end = row + strip_rows < f.n ? row + strip_rows : f.n;
  for (std::int64_t c = 0; c < tile_columns; ++c) {
    column[c] = tile + c * strip_rows;
    for (std::int64_t i = row > col + c ? row : col + c; i < end; ++i) {
      column[c][i - row] = f.column(col + c)[i];
    }
  }
  update_tile(pivots, strip, factors, column);
  for (std::int64_t c = 0; c < tile_columns; ++c) {
    for (std::int64_t i = row > col + c ? row : col + c; i < end; ++i) {
      f.column(col + c)[i] = column[c][i - row];
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

inline void update_trailing_triangle(const Front& f, const Panel& panel) {
  alignas(64) double factors[column_block * panel_pivots];
  alignas(64) double strip[panel_pivots * strip_rows];
  for (std::int64_t first = panel.pivots; first < f.n; first += column_block) {
    const std::int64_t columns = f.n - first < column_block ? f.n - first : column_block;
    gather_factors(f, panel, first, columns, factors);
    for (std::int64_t row = first; row < f.n; row += strip_rows) {
      const std::int64_t rows = f.n - row < strip_rows ? f.n - row : strip_rows;
      load_strip(f, panel.pivots, row, rows, strip);
      for (std::int64_t c = 0; c < columns && first + c < row + rows; c += tile_columns) {
        const std::int64_t col = first + c;
        if (rows == strip_rows && col + tile_columns - 1 <= row) {
          double* column[tile_columns];
          for (std::int64_t q = 0; q < tile_columns; ++q) {
            column[q] = f.column(col + q) + row;
          }
          update_tile(panel.pivots, strip, factors + c * panel.pivots, column);
        } else {
          update_cut_tile(f, panel.pivots, strip, factors + c * panel.pivots, row, col);
        }
      }
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
