// SPDX-License-Identifier: MIT
// The register tile of the factorizations: t(i,c) := (..(t(i,c) + l(i,1)·g(1,c)) + ..) + l(i,depth)·g(depth,c), each
// product rounded before it is added, while t stays in registers (the tile of Goto and van de Geijn, ACM TOMS 34
// (2008), with the depth loop innermost).
//
// Rows are held in strips of strip_rows, one a lane, pivot after pivot: strip[p][row]. Factors are held in tiles of
// tile_columns, pivot after pivot: factors[p][column].
#pragma once

#include <cstdint>

#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

using Index = std::int64_t;
using Tag = hn::ScalableTag<double>;
using Vec = hn::Vec<Tag>;
constexpr Index lanes = hn::MaxLanes(Tag());

constexpr Index strip_rows = 8;

// The tile that keeps the multipliers and adders busiest with the registers of the level, measured on Zen 4: with one
// vector of rows a factor is broadcast by the multiplication that reads it.
constexpr int tile_vectors = lanes == 8 ? 1 : 2;
constexpr Index tile_rows = tile_vectors * lanes;
constexpr int tile_columns = lanes == 8 ? 12 : 6;
static_assert(strip_rows % tile_rows == 0);

// All loops over a tile's vectors are unrolled: only then do the vectors live in registers throughout.
using TileVectors = Vec[tile_columns][tile_vectors];

HWY_INLINE void add_products(Index depth, const double* strip, const double* factors, TileVectors& t) {
  const Tag d;
  for (Index p = 0; p < depth; ++p, strip += strip_rows, factors += tile_columns) {
    Vec l[tile_vectors];
#pragma GCC unroll 2
    for (int v = 0; v < tile_vectors; ++v) {
      l[v] = hn::Load(d, strip + v * lanes);
    }
#pragma GCC unroll 12
    for (int c = 0; c < tile_columns; ++c) {
      const Vec g = hn::Set(d, factors[c]);
#pragma GCC unroll 2
      for (int v = 0; v < tile_vectors; ++v) {
        t[c][v] = hn::Add(t[c][v], hn::Mul(l[v], g));
      }
    }
  }
}

// Column c of the tile at place(c).
template <class Place>
HWY_INLINE void load_tile(const Place& place, TileVectors& t) {
#pragma GCC unroll 12
  for (int c = 0; c < tile_columns; ++c) {
    const double* const from = place(c);
#pragma GCC unroll 2
    for (int v = 0; v < tile_vectors; ++v) {
      t[c][v] = hn::LoadU(Tag(), from + v * lanes);
    }
  }
}

// The strip_rows elements from `from` on, but 0 in place of the first `absent` (which are read).
HWY_INLINE void copy_strip(const double* from, Index absent, double* to) {
  const Tag d;
  for (Index v = 0; v < strip_rows; v += lanes) {
    const auto none = hn::FirstN(d, static_cast<std::size_t>(absent > v ? absent - v : 0));
    hn::Store(hn::IfThenZeroElse(none, hn::LoadU(d, from + v)), d, to + v);
  }
}

// At most strip_rows elements.
HWY_INLINE void copy_few(const double* from, Index count, double* to) {
  const hn::CappedTag<double, 4> four;
  const hn::CappedTag<double, 2> two;
  for (; count >= 4; count -= 4, from += 4, to += 4) {
    for (Index v = 0; v < 4; v += static_cast<Index>(hn::MaxLanes(four))) {
      hn::StoreU(hn::LoadU(four, from + v), four, to + v);
    }
  }
  if (count >= 2) {
    hn::StoreU(hn::LoadU(two, from), two, to);
    count -= 2;
    from += 2;
    to += 2;
  }
  if (count > 0) {
    *to = *from;
  }
}

template <class Place>
HWY_INLINE void store_tile(const Place& place, const TileVectors& t) {
#pragma GCC unroll 12
  for (int c = 0; c < tile_columns; ++c) {
    double* const to = place(c);
#pragma GCC unroll 2
    for (int v = 0; v < tile_vectors; ++v) {
      hn::StoreU(t[c][v], Tag(), to + v * lanes);
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
