// SPDX-License-Identifier: MIT
// The triangle that a panel's equations make among themselves, eliminated on a copy in strips.
#pragma once

#include <cstdint>

#include "algorithms/easlff_nt_panel_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

class PanelTriangle {
 public:
  PanelTriangle(const Front& f, Panel& panel, double* strips)
      : f_(f), panel_(panel), x_(strips), count_((panel.pivots + strip_rows - 1) / strip_rows) {}

  // False, with the front unchanged, when a pivot would be refused.
  bool eliminate(PivotTest& test) {
    load();
    PivotTest trial = test;
    for (Index g = 0; g < panel_.groups; ++g) {
      gather_factors(g);
      if (!eliminate_corner(g, trial)) {
        return false;
      }
      solve_strips(panel_, g, x_, corner_strip(g) + corner_strips, count_);
    }
    test = trial;
    store();
    return true;
  }

 private:
  // A group's own equations lie in at most two strips, which are taken whole: its corner.
  static constexpr Index corner_strips = 2;
  static constexpr Index corner_rows = corner_strips * strip_rows;
  static constexpr Index narrow_corner = 4;
  static constexpr Index wide_corner = tile_columns < 8 ? tile_columns : 8;
  // Groups begin and end at multiples of it.
  static constexpr Index piece = tile_columns == 12 ? 4 : 2;
  using PieceTag = hn::CappedTag<double, piece>;

  static Index corner_strip(Index g) { return g * tile_columns / strip_rows; }
  double* at(Index s, Index p) const { return x_ + s * panel_.strip_size() + p * strip_rows; }

  // Strip s takes part in the groups up to that of its last row. What is not of the triangle is 0.
  Index columns_of(Index s) const {
    const Index last = (s + 1) * strip_rows - 1;
    const Index columns = (last / tile_columns + 1) * tile_columns;
    return columns < panel_.columns() ? columns : panel_.columns();
  }

  void load() const {
    const Tag d;
    for (Index s = 0; s < count_; ++s) {
      const Index row = s * strip_rows;
      const Index rows = panel_.pivots - row < strip_rows ? panel_.pivots - row : strip_rows;
      for (Index p = 0; p < columns_of(s); ++p) {
        double* const to = at(s, p);
        const Index above = p > row ? p - row : 0;
        if (rows == strip_rows && above < rows) {
          copy_strip(f_.column(p) + row, above, to);  // what it skips is of the column before
          continue;
        }
        for (Index v = 0; v < strip_rows; v += lanes) {
          hn::Store(hn::Zero(d), d, to + v);
        }
        if (above < rows) {
          copy_few(f_.column(p) + row + above, rows - above, to + above);
        }
      }
    }
  }

  void store() const {
    const Tag d;
    for (Index s = 0; s < count_; ++s) {
      const Index row = s * strip_rows;
      const Index rows = panel_.pivots - row < strip_rows ? panel_.pivots - row : strip_rows;
      for (Index p = 0; p < row; ++p) {
        if (rows == strip_rows) {
          for (Index v = 0; v < strip_rows; v += lanes) {
            hn::StoreU(hn::Load(d, at(s, p) + v), d, f_.column(p) + row + v);
          }
        } else {
          copy_few(at(s, p), rows, f_.column(p) + row);
        }
      }
      for (Index p = row; p < row + rows; ++p) {
        f_.column(p)[p] = panel_.d[p];
        copy_few(at(s, p) + (p - row) + 1, row + rows - p - 1, f_.column(p) + p + 1);
      }
    }
  }

  // w of group g from the rows that its columns are.
  void gather_factors(Index g) {
    const PieceTag d;
    const Index first = g * tile_columns;
    double* to = panel_.factors(g);
    const double* from[tile_columns / piece];
    for (Index q = 0; q < tile_columns; q += piece) {
      const Index row = first + q;
      from[q / piece] = row < panel_.pivots ? at(row / strip_rows, 0) + row % strip_rows : nullptr;
    }
    for (Index p = 0; p < first; ++p) {
      const auto pivot = hn::Set(d, panel_.d[p]);
      for (const double* const l : from) {
        hn::Store(l == nullptr ? hn::Zero(d) : hn::Neg(hn::Mul(hn::Load(d, l + p * strip_rows), pivot)), d, to);
        to += piece;
      }
    }
  }

  // The first columns of group g, in strip s of its corner, with the products of the pivots before the group.
  template <Index Columns>
  void corner_products(Index g, Index s0, Index s, double (&a)[tile_columns][corner_rows]) const {
    const Tag d;
    const Index first = g * tile_columns;
    for (Index part = 0; part < strip_rows; part += tile_rows) {
      const double* l = at(s0 + s, 0) + part;
      const double* factors = panel_.factors(g);
      Vec t[Columns][tile_vectors];
#pragma GCC unroll 12
      for (Index c = 0; c < Columns; ++c) {
#pragma GCC unroll 2
        for (int v = 0; v < tile_vectors; ++v) {
          t[c][v] = hn::Load(d, l + (first + c) * strip_rows + v * lanes);
        }
      }
      for (Index p = 0; p < first; ++p, l += strip_rows, factors += tile_columns) {
        Vec x[tile_vectors];
#pragma GCC unroll 2
        for (int v = 0; v < tile_vectors; ++v) {
          x[v] = hn::Load(d, l + v * lanes);
        }
#pragma GCC unroll 12
        for (Index c = 0; c < Columns; ++c) {
          const Vec factor = hn::Set(d, factors[c]);
#pragma GCC unroll 2
          for (int v = 0; v < tile_vectors; ++v) {
            t[c][v] = hn::Add(t[c][v], hn::Mul(x[v], factor));
          }
        }
      }
#pragma GCC unroll 12
      for (Index c = 0; c < Columns; ++c) {
#pragma GCC unroll 2
        for (int v = 0; v < tile_vectors; ++v) {
          hn::Store(t[c][v], d, a[c] + s * strip_rows + part + v * lanes);
        }
      }
    }
  }

  // The strips of group g's own equations.
  bool eliminate_corner(Index g, PivotTest& test) {
    const Tag d;
    const Index first = g * tile_columns;
    const Index s0 = corner_strip(g);
    const Index strips = s0 + corner_strips <= count_ ? corner_strips : count_ - s0;
    alignas(64) double a[tile_columns][corner_rows] = {};
    const Index diagonal = first - s0 * strip_rows;
    for (Index s = 0; s < strips; ++s) {
      // Columns that begin below the strip are none of the triangle's there.
      const Index columns = s == 0 ? strip_rows - diagonal : tile_columns;
      if (columns <= narrow_corner) {
        corner_products<narrow_corner>(g, s0, s, a);
      } else if (wide_corner < tile_columns && columns <= wide_corner) {
        corner_products<wide_corner>(g, s0, s, a);
      } else {
        corner_products<tile_columns>(g, s0, s, a);
      }
    }
    double* const w = panel_.factors(g) + first * tile_columns;
#pragma GCC unroll 12
    for (Index q = 0; q < tile_columns; ++q) {
      if (first + q >= panel_.pivots) {
        panel_.r[first + q] = panel_.d[first + q] = 0;
        for (Index c = 0; c < tile_columns; ++c) {
          w[q * tile_columns + c] = 0;
        }
        continue;
      }
      const double pivot = a[q][diagonal + q];
      double left = 0;
      if (!passes(pivot, test, left)) {
        return false;
      }
      const double r = 1 / pivot;
      panel_.d[first + q] = pivot;
      panel_.r[first + q] = r;
      alignas(64) double factor[corner_rows];
      const Index same_block = q - q % block_pivots + block_pivots;
      Vec l[corner_rows / lanes];
      for (Index v = 0; v < corner_rows / lanes; ++v) {
        const Vec u = hn::Load(d, a[q] + v * lanes);
        l[v] = hn::Mul(u, hn::Set(d, r));
        hn::Store(hn::Neg(hn::Mul(l[v], hn::Set(d, pivot))), d, factor + v * lanes);
      }
      for (Index c = q + 1; c < same_block; ++c) {
        factor[diagonal + c] = -a[q][diagonal + c];
      }
#pragma GCC unroll 12
      for (Index c = q + 1; c < tile_columns; ++c) {
        const double g_c = factor[diagonal + c];
        w[q * tile_columns + c] = g_c;
        for (Index v = 0; v < corner_rows / lanes; ++v) {
          const Vec sum = hn::Load(d, a[c] + v * lanes);
          hn::Store(hn::Add(sum, hn::Mul(l[v], hn::Set(d, g_c))), d, a[c] + v * lanes);
        }
      }
      for (Index v = 0; v < corner_rows / lanes; ++v) {
        hn::Store(l[v], d, a[q] + v * lanes);
      }
    }
    for (Index s = 0; s < strips; ++s) {
      for (Index c = 0; c < tile_columns; ++c) {
        for (Index v = 0; v < strip_rows; v += lanes) {
          hn::Store(hn::Load(d, a[c] + s * strip_rows + v), d, at(s0 + s, first + c) + v);
        }
      }
    }
    return true;
  }

  const Front& f_;
  Panel& panel_;
  double* x_;
  Index count_;
};

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
