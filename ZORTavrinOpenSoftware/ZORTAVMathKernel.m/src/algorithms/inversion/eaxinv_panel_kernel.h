// SPDX-License-Identifier: MIT
// What both kinds of inversion do with a panel of pivots.
//
// Step p of the elimination adds to every column j a multiple of column p: a(i,j) := a(i,j) + c(i,p)·t(p,j), where
// c(·,p) is column p and t(p,j) the multiplier as step p finds them. Both depend on the panel's earlier steps only. So
// they are computed for all steps of a panel first, from the panel's own rows and columns; then each other element
// takes the panel's updates, in the order of the steps, while it stays in a register. Every element sees the operations
// of the plain elimination in their order, but the matrix is read and written once per panel.
//
// An element of a panel row i takes part in all steps before step i, becomes a multiplier, starts anew from it in step
// i and takes part in the rest; one of a panel column j is replaced in step j likewise.
#pragma once

#include <cstdint>

#include "algorithms/inversion/eaxinv_tile_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr Index panel_pivots = 48;
constexpr Index panel_strips = panel_pivots / strip_rows;
constexpr Index panel_groups = panel_pivots / tile_columns;  // of columns of the panel
static_assert(panel_pivots % strip_rows == 0 && panel_pivots % tile_columns == 0);

// Strips whose c is held together: with it, a tile's factors are packed once for that many strips.
constexpr Index block_strips = 84;
constexpr Index block_rows = block_strips * strip_rows;
constexpr Index strip_size = panel_pivots * strip_rows;

// Where the rows are cut into strips. When the columns' distance is such that a tile's columns crowd in few of a
// cache's sets, a line shared by two strips is lost in between: then they are cut on the lines' boundaries.
constexpr Index crowding_distance = 256;

class StripGrid {
 public:
  StripGrid(const double* a, Index lda) {
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(a);
    if (lda % crowding_distance == 0 && address % sizeof *a == 0) {
      phase_ = static_cast<Index>(address / sizeof *a % strip_rows);
    }
  }
  // rows from i to the next cut or to `end`
  Index rows(Index i, Index end) const { return smaller(end - i, strip_rows - (i + phase_) % strip_rows); }
  // the end of a block of at most block_strips strips from `top` on
  Index block_end(Index top, Index end) const { return smaller(end, top + block_rows - (top + phase_) % strip_rows); }
  // the number of the strip of row i in a block that begins at `top`
  Index strip(Index i, Index top) const { return (i + phase_) / strip_rows - (top + phase_) / strip_rows; }

 private:
  static Index smaller(Index x, Index y) { return x < y ? x : y; }
  Index phase_ = 0;
};

// The panel's rows and columns among themselves; i, j and p count from the panel's first pivot.
struct PanelBlock {
  Index pivots;
  Zeros zeros;             // among the multipliers: some or none
  double r[panel_pivots];  // what replaces each pivot, up to its sign
  // t(p,j) at [j / tile_columns][p][j % tile_columns]; 0 for j = p and for columns that the panel does not have
  alignas(64) double t[panel_groups][panel_pivots][tile_columns];
  // c(i,p) for i <= p at [i / strip_rows][p][i % strip_rows]; 0 for rows that the panel does not have
  alignas(64) double c[panel_strips][panel_pivots][strip_rows];
  // a(i,j) at [j][i], once all steps are done
  alignas(64) double a[panel_pivots][panel_pivots];

  double& multiplier(Index p, Index j) { return t[j / tile_columns][p][j % tile_columns]; }
  double& column(Index i, Index p) { return c[i / strip_rows][p][i % strip_rows]; }
};

// How a strip of the panel's columns becomes c. `scaled`: c(i,p) = a·(-r(p)); `plain`: c(i,p) = a. `mirrored`: a is
// found in the transposed place, where the roles are exchanged: the strip's own multiplier is a·r(p), the factors are
// the panel's c.
enum class Solve { scaled, plain, mirrored };

using GroupColumns = Vec[tile_columns][tile_vectors];

template <Solve kind, int q>
HWY_INLINE void solve_columns(Index columns, const double* factors, const double* r, GroupColumns& a,
                              double* multipliers) {
  if constexpr (q < tile_columns) {
    if (q >= columns) {
      return;
    }
    const Tag d;
    constexpr Skip skip = kind == Solve::mirrored ? Skip::zero_rows : Skip::zero_factors;
    Vec l[tile_vectors];
    for (int v = 0; v < tile_vectors; ++v) {
      if constexpr (kind == Solve::scaled) {
        a[q][v] = hn::Mul(hn::Set(d, -r[q]), a[q][v]);
      }
      l[v] = a[q][v];
      if constexpr (kind == Solve::mirrored) {
        l[v] = hn::Mul(a[q][v], hn::Set(d, r[q]));
        hn::Store(l[v], d, multipliers + q * strip_rows + v * lanes);
      }
    }
    for (int c = q + 1; c < tile_columns; ++c) {
      const Vec g = hn::Set(d, factors[q * tile_columns + c]);
      for (int v = 0; v < tile_vectors; ++v) {
        a[c][v] = add_product<skip>(a[c][v], l[v], g);
      }
    }
    solve_columns<kind, q + 1>(columns, factors, r, a, multipliers);
  }
}

// One group of columns of a strip, which the steps before the group have updated.
template <Solve kind>
HWY_NOINLINE void solve_group(Index columns, const double* factors, const double* r, double* strip,
                              double* multipliers) {
  const Tag d;
  for (Index first = 0; first < strip_rows; first += tile_rows) {
    GroupColumns a;
    for (Index c = 0; c < tile_columns; ++c) {
      for (int v = 0; v < tile_vectors; ++v) {
        a[c][v] = c < columns ? hn::Load(d, strip + c * strip_rows + first + v * lanes) : hn::Zero(d);
      }
    }
    solve_columns<kind, 0>(columns, factors, r, a, multipliers + first);
    for (Index c = 0; c < columns; ++c) {
      for (int v = 0; v < tile_vectors; ++v) {
        hn::Store(a[c][v], d, strip + c * strip_rows + first + v * lanes);
      }
    }
  }
}

// Turns the panel's columns in a strip into c. `factors` are the block's t or, mirrored, its c in the same layout; then
// the strip's own multipliers are left in `multipliers`.
template <Solve kind>
inline void solve_strip(Index pivots, const double (*factors)[panel_pivots][tile_columns], Zeros zeros, const double* r,
                        double* strip, double* multipliers) {
  // The last tile is updated whole: what it has beyond the pivots must be numbers, or traps that are on would go off.
  for (Index i = pivots * strip_rows; i < (pivots + tile_columns - 1) / tile_columns * tile_columns * strip_rows; ++i) {
    strip[i] = 0;
  }
  for (Index q = 0; q < pivots; q += tile_columns) {
    const double* const group = factors[q / tile_columns][0];
    const Index columns = pivots - q < tile_columns ? pivots - q : tile_columns;
    double* const at = strip + q * strip_rows;
    if constexpr (kind == Solve::mirrored) {
      update_tile<Skip::zero_rows>(q, multipliers, group, at, strip_rows);
    } else {
      update_whole_tile(zeros, q, strip, group, at, strip_rows);
    }
    solve_group<kind>(columns, group + q * tile_columns, r + q, at, multipliers + q * strip_rows);
  }
}

template <int p>
HWY_INLINE void finish_columns(Index columns, const double* strip, const double* factors, GroupColumns& a) {
  if constexpr (p < tile_columns) {
    if (p >= columns) {
      return;
    }
    const Tag d;
    for (int v = 0; v < tile_vectors; ++v) {
      const Vec l = hn::Load(d, strip + p * strip_rows + v * lanes);
      for (int c = 0; c < p; ++c) {
        a[c][v] = add_product<Skip::zero_factors>(a[c][v], l, hn::Set(d, factors[p * tile_columns + c]));
      }
    }
    finish_columns<p + 1>(columns, strip, factors, a);
  }
}

// Panel columns outside the panel's rows, as their own steps leave them: the later steps of the panel.
inline void finish_column_strip(const PanelBlock& block, const double* strip, Index rows, double* a, Index lda) {
  const Tag d;
  for (Index q = 0; q < block.pivots; q += tile_columns) {
    const Index columns = block.pivots - q < tile_columns ? block.pivots - q : tile_columns;
    TileCopy copy({rows, columns}, a + q * lda, lda);
    const double* const factors = block.t[q / tile_columns][0];
    for (Index first = 0; first < strip_rows; first += tile_rows) {
      GroupColumns t;
      for (Index c = 0; c < tile_columns; ++c) {
        for (int v = 0; v < tile_vectors; ++v) {
          t[c][v] = hn::Load(d, copy.data() + c * strip_rows + first + v * lanes);
        }
      }
      finish_columns<1>(columns, strip + q * strip_rows + first, factors + q * tile_columns, t);
      for (Index c = 0; c < tile_columns; ++c) {
        for (int v = 0; v < tile_vectors; ++v) {
          hn::Store(t[c][v], d, copy.data() + c * strip_rows + first + v * lanes);
        }
      }
    }
    const Index next = q + tile_columns;
    if (next < block.pivots) {
      update_whole_tile(block.zeros, block.pivots - next, strip + next * strip_rows, factors + next * tile_columns,
                        copy.data(), strip_rows);
    }
    copy.store();
  }
}

// The steps of a strip's own pivots on rows of the panel: row p begins with step p.
HWY_NOINLINE void begin_rows(Index rows, const double* c, const double* factors, double* tile) {
  const Tag d;
  for (Index first = 0; first < strip_rows; first += tile_rows) {
    GroupColumns a;
    for (Index q = 0; q < tile_columns; ++q) {
      for (int v = 0; v < tile_vectors; ++v) {
        a[q][v] = hn::Load(d, tile + q * strip_rows + first + v * lanes);
      }
    }
    for (Index p = first; p < rows; ++p) {
      for (int v = 0; v < tile_vectors; ++v) {
        const Index active = p + 1 - first - v * lanes;
        const auto begun = hn::FirstN(d, static_cast<std::size_t>(active < 0 ? 0 : active < lanes ? active : lanes));
        const Vec l = hn::Load(d, c + p * strip_rows + first + v * lanes);
        for (Index q = 0; q < tile_columns; ++q) {
          const Vec g = hn::Set(d, factors[p * tile_columns + q]);
          a[q][v] = hn::IfThenElse(begun, add_product<Skip::zero_factors>(a[q][v], l, g), a[q][v]);
        }
      }
    }
    for (Index q = 0; q < tile_columns; ++q) {
      for (int v = 0; v < tile_vectors; ++v) {
        hn::Store(a[q][v], d, tile + q * strip_rows + first + v * lanes);
      }
    }
  }
}

// The panel's rows in columns outside the panel, whose multipliers are `factors`: what step i makes of row i, which is
// the multiplier times start(i), and the steps from i on. `a` is at the panel's first row.
inline void finish_row_tile(const PanelBlock& block, const double* start, Zeros zeros, const double* factors,
                            Index columns, double* a, Index lda) {
  for (Index s = 0; s < block.pivots; s += strip_rows) {
    const Index rows = block.pivots - s < strip_rows ? block.pivots - s : strip_rows;
    alignas(64) double tile[tile_columns * strip_rows] = {};
    for (Index i = 0; i < rows; ++i) {
      for (Index q = 0; q < tile_columns; ++q) {
        tile[q * strip_rows + i] = factors[(s + i) * tile_columns + q] * start[s + i];
      }
    }
    const double* const c = block.c[s / strip_rows][0];
    begin_rows(rows, c + s * strip_rows, factors + s * tile_columns, tile);
    const Index next = s + strip_rows;
    if (next < block.pivots) {
      update_whole_tile(zeros, block.pivots - next, c + next * strip_rows, factors + next * tile_columns, tile,
                        strip_rows);
    }
    for (Index q = 0; q < columns; ++q) {
      for (Index i = 0; i < rows; ++i) {
        a[q * lda + s + i] = tile[q * strip_rows + i];
      }
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
