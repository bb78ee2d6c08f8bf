// SPDX-License-Identifier: MIT
// The rows below a panel, block of rows after block of rows: they are copied into strips, become multipliers there, go
// back, and their trailing entries take the updates of all the panel's pivots, a(i,c) := (..(a(i,c) + l(i,1)·g(1,c)) +
// ..) with g(p,c) = -l(c,p)·d(p), while a tile of them stays in registers. The tiles of a group of columns follow one
// another down the columns: the factors stay in the first-level cache, the strips in the second, and the front is
// read and written in long runs.
#pragma once

#include <cstdint>

#include "algorithms/easlff_nt_panel_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// A block's strips on the stack: 256 KiB.
constexpr Index front_strip_elements = 32768;

// Columns whose factors are gathered at once: the panel's columns lie far apart, each on a page of its own.
constexpr Index factor_columns = 48;
static_assert(factor_columns % tile_columns == 0);

class RowsBelow {
 public:
  RowsBelow(const Front& f, const Panel& panel, double* strips) : f_(f), panel_(panel), x_(strips) {}

  void update() {
    const Index block_rows = front_strip_elements / panel_.strip_size() * strip_rows;
    for (Index top = panel_.pivots; top < f_.n; top += block_rows) {
      top_ = top;
      end_ = top + block_rows < f_.n ? top + block_rows : f_.n;
      const Index strips = (end_ - top + strip_rows - 1) / strip_rows;
      load();
      for (Index s = 0; s < strips; ++s) {
        for (Index g = 0; g < panel_.groups; ++g) {
          solve_group(panel_, g, strip(s));
        }
      }
      store();
      for (Index first = panel_.pivots; first < end_; first += factor_columns) {
        gather_factors(first);
        for (Index c = first; c < first + factor_columns && c < end_; c += tile_columns) {
          update_columns(c, factors_ + (c - first) * panel_.pivots, strips);
        }
      }
    }
  }

 private:
  double* strip(Index s) const { return x_ + s * panel_.strip_size(); }

  // Rows that the block does not have and columns that the panel does not have are 0.
  void load() const {
    const Tag d;
    const Index whole = (end_ - top_) / strip_rows;
    const Index rest = end_ - top_ - whole * strip_rows;
    for (Index p = 0; p < panel_.columns(); ++p) {
      const double* const from = f_.column(p) + top_;
      double* to = x_ + p * strip_rows;
      if (p >= panel_.pivots) {
        for (Index s = 0; s < whole + (rest > 0 ? 1 : 0); ++s) {
          std::memset(to + s * panel_.strip_size(), 0, strip_rows * sizeof *to);
        }
        continue;
      }
      for (Index s = 0; s < whole; ++s, to += panel_.strip_size()) {
        for (Index v = 0; v < strip_rows; v += lanes) {
          hn::Store(hn::LoadU(d, from + s * strip_rows + v), d, to + v);
        }
      }
      for (Index i = 0; rest > 0 && i < strip_rows; ++i) {
        to[i] = i < rest ? from[whole * strip_rows + i] : 0;
      }
    }
  }

  void store() const {
    const Tag d;
    const Index whole = (end_ - top_) / strip_rows;
    const Index rest = end_ - top_ - whole * strip_rows;
    for (Index p = 0; p < panel_.pivots; ++p) {
      double* const to = f_.column(p) + top_;
      const double* from = x_ + p * strip_rows;
      for (Index s = 0; s < whole; ++s, from += panel_.strip_size()) {
        for (Index v = 0; v < strip_rows; v += lanes) {
          hn::StoreU(hn::Load(d, from + v), d, to + s * strip_rows + v);
        }
      }
      for (Index i = 0; i < rest; ++i) {
        to[whole * strip_rows + i] = from[i];
      }
    }
  }

  // g of the columns from `first` on, tile after tile; 0 for columns that the front does not have.
  void gather_factors(Index first) {
    using Piece = hn::CappedTag<double, tile_columns % 4 == 0 ? 4 : 2>;
    const Piece d;
    double* to = factors_;
    const double* l = f_.column(0) + first;
    for (Index p = 0; p < panel_.pivots; l += f_.n - ++p, to += tile_columns) {
      const auto pivot = hn::Set(d, panel_.d[p]);
      for (Index c = 0; c < factor_columns; c += tile_columns) {
        double* const tile = to + c * panel_.pivots;
        if (first + c + tile_columns <= f_.n) {
          for (Index q = 0; q < tile_columns; q += static_cast<Index>(hn::MaxLanes(d))) {
            hn::StoreU(hn::Mul(hn::Neg(hn::LoadU(d, l + c + q)), pivot), d, tile + q);
          }
        } else {
          for (Index q = 0; q < tile_columns; ++q) {
            tile[q] = first + c + q < f_.n ? -l[c + q] * panel_.d[p] : 0;
          }
        }
      }
    }
  }

  HWY_INLINE void update_tile(const double* strip, const double* factors, double* const* column, Index row) const {
    for (Index part = 0; part < strip_rows; part += tile_rows) {
      const auto place = [&](int q) { return column[q] + row + part; };
      TileVectors t;
      load_tile(place, t);
      add_products(panel_.pivots, strip + part, factors, t);
      store_tile(place, t);
    }
  }

  // Of a tile at (row, c) that is not all of the front's triangle, what is.
  void update_part(const double* strip, const double* factors, double* const* column, Index row, Index c) const {
    alignas(64) double copy[tile_columns][strip_rows] = {};
    double* copies[tile_columns];
    const Index end = row + strip_rows < end_ ? strip_rows : end_ - row;
    for (Index q = 0; q < tile_columns; ++q) {
      copies[q] = copy[q];
      for (Index i = c + q > row ? c + q - row : 0; i < end; ++i) {
        copy[q][i] = column[q][row + i];
      }
    }
    update_tile(strip, factors, copies, 0);
    for (Index q = 0; q < tile_columns; ++q) {
      for (Index i = c + q > row ? c + q - row : 0; i < end; ++i) {
        column[q][row + i] = copy[q][i];
      }
    }
  }

  HWY_NOINLINE void update_columns(Index c, const double* factors, Index strips) {
    double* column[tile_columns];
    double* next[tile_columns];
    for (Index q = 0; q < tile_columns; ++q) {
      column[q] = f_.column(c + q);
      next[q] = f_.column(c + q + tile_columns);
    }
    for (Index s = c > top_ ? (c - top_) / strip_rows : 0; s < strips; ++s) {
      const Index row = top_ + s * strip_rows;
      if (row >= c + tile_columns - 1 && row + strip_rows <= end_) {
        for (Index q = 0; q < tile_columns; ++q) {
          __builtin_prefetch(next[q] + row, 1, 2);
        }
        update_tile(strip(s), factors, column, row);
      } else {
        update_part(strip(s), factors, column, row, c);
      }
    }
  }

  const Front& f_;
  const Panel& panel_;
  double* x_;
  Index top_ = 0;
  Index end_ = 0;
  alignas(64) double factors_[panel_pivots * factor_columns];
};

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
