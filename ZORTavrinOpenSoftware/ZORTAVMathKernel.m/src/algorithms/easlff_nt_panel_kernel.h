// SPDX-License-Identifier: MIT
// A panel of pivots of the front elimination. The blocks' steps, seen from one element (i,c), are a sequence over the
// pivots p before c,
//
//   a(i,c) := a(i,c) + l(i,p)·w(p,c),  then  l(i,c) = a(i,c)·r(c),  r = 1/d,
//
// with w(p,c) = -a(c,p) as it was before its scaling where p and c are of one block, else w(p,c) = -l(c,p)·d(p). So the
// panel's columns are taken in groups of tile_columns: a group receives the pivots before it while it stays in
// registers, and its own pivots there too.
//
// The panel's own triangle comes first, on a copy: a refused pivot is found before anything is changed.
#pragma once

#include <cstdint>

#include "algorithms/easlff_nt_block_kernel.h"
#include "algorithms/factor_tile_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr Index panel_pivots = 108;          // of a front's only panel
constexpr Index pivots_of_one_of_many = 96;  // more make the panels dearer than the trailing updates they save
constexpr Index panel_groups = panel_pivots / tile_columns;
static_assert(panel_pivots % tile_columns == 0 && tile_columns % block_pivots == 0);

// w of group g is held from the first pivot to the group's own last: in all groups before it as much as this.
constexpr Index factors_before(Index g) {
  return tile_columns * tile_columns * (g * (g + 1) / 2);
}

struct Panel {
  Index pivots;
  Index groups;
  double d[panel_pivots];
  double r[panel_pivots];  // 0 for the columns that the last group has in excess
  alignas(64) double w[factors_before(panel_groups)];

  explicit Panel(Index count) : pivots(count), groups((count + tile_columns - 1) / tile_columns) {}
  Index columns() const { return groups * tile_columns; }
  Index strip_size() const { return columns() * strip_rows; }
  double* factors(Index g) { return w + factors_before(g); }
  const double* factors(Index g) const { return w + factors_before(g); }
};

// The group's columns q, q+1, .. among themselves.
template <int q>
HWY_INLINE void solve_columns(const double* w, const double* r, TileVectors& t) {
  if constexpr (q < tile_columns) {
    const Tag d;
#pragma GCC unroll 2
    for (int v = 0; v < tile_vectors; ++v) {
      t[q][v] = hn::Mul(t[q][v], hn::Set(d, r[q]));
    }
#pragma GCC unroll 12
    for (int c = q + 1; c < tile_columns; ++c) {
      const Vec g = hn::Set(d, w[q * tile_columns + c]);
#pragma GCC unroll 2
      for (int v = 0; v < tile_vectors; ++v) {
        t[c][v] = hn::Add(t[c][v], hn::Mul(t[q][v], g));
      }
    }
    solve_columns<q + 1>(w, r, t);
  }
}

// The entries of group g of a strip become multipliers; those of the groups before have.
HWY_INLINE void solve_group(const Panel& panel, Index g, double* strip) {
  const Index depth = g * tile_columns;
  const double* const w = panel.factors(g);
  for (Index first = 0; first < strip_rows; first += tile_rows) {
    double* const at = strip + first;
    const auto place = [&](int c) { return at + (depth + c) * strip_rows; };
    TileVectors t;
    load_tile(place, t);
    add_products(depth, at, w, t);
    solve_columns<0>(w + depth * tile_columns, panel.r + depth, t);
    store_tile(place, t);
  }
}

inline void solve_strips(const Panel& panel, Index g, double* strips, Index from, Index to) {
  for (Index s = from; s < to; ++s) {
    solve_group(panel, g, strips + s * panel.strip_size());
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
