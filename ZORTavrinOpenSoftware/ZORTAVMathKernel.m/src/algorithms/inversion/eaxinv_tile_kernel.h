// SPDX-License-Identifier: MIT
// The register tile of the inversion: a(i,c) := (..(a(i,c) + l(i,1)·g(1,c)) + ..) + l(i,depth)·g(depth,c), each product
// rounded before it is added, while a stays in registers (the tile of Goto and van de Geijn, ACM TOMS 34 (2008), with
// the depth loop innermost).
//
// Rows are held in strips of strip_rows, pivot after pivot: strip[p][row]. Factors are held in tiles of tile_columns,
// pivot after pivot: factors[p][column].
#pragma once

#include <hwy/cache_control.h>

#include <cstdint>

#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

using Index = std::int64_t;
using Tag = hn::ScalableTag<double>;
using Vec = hn::Vec<Tag>;
constexpr Index lanes = hn::MaxLanes(Tag());

constexpr Index strip_rows = 8;

// The tile that keeps the multipliers and adders busiest with the registers of the level, measured on Zen 4.
constexpr int tile_vectors = lanes == 8 ? 1 : 2;
constexpr Index tile_rows = tile_vectors * lanes;
constexpr int tile_columns = lanes == 8 ? 12 : lanes == 4 ? 6 : 4;
static_assert(strip_rows % tile_rows == 0);

// A zero multiplier skips its update (adding its zero product would turn -0 into +0, or a number into NaN beside an
// infinity). The multipliers are the factors or, where the roles are exchanged, the rows of the strip.
enum class Skip { nothing, zero_factors, zero_rows };

template <Skip skip>
HWY_INLINE Vec add_product(Vec a, Vec l, Vec g) {
  const Vec sum = hn::Add(a, hn::Mul(l, g));
  if constexpr (skip == Skip::nothing) {
    return sum;
  } else {
    return hn::IfThenElse(hn::Eq(skip == Skip::zero_factors ? g : l, hn::Zero(Tag())), a, sum);
  }
}

// Column c of the tile is at a + c·stride.
template <Skip skip>
HWY_NOINLINE void update_tile(Index depth, const double* strip, const double* factors, double* a, Index stride) {
  const Tag d;
  for (Index first = 0; first < strip_rows; first += tile_rows, strip += tile_rows, a += tile_rows) {
    Vec t[tile_columns][tile_vectors];
    for (Index c = 0; c < tile_columns; ++c) {
      for (int v = 0; v < tile_vectors; ++v) {
        t[c][v] = hn::LoadU(d, a + c * stride + v * lanes);
      }
      hwy::Prefetch(a + c * stride + tile_rows + strip_rows - 1);
    }
    for (Index p = 0; p < depth; ++p) {
      Vec l[tile_vectors];
      for (int v = 0; v < tile_vectors; ++v) {
        l[v] = hn::Load(d, strip + p * strip_rows + v * lanes);
      }
      for (Index c = 0; c < tile_columns; ++c) {
        const Vec g = hn::Set(d, factors[p * tile_columns + c]);
        for (int v = 0; v < tile_vectors; ++v) {
          t[c][v] = add_product<skip>(t[c][v], l[v], g);
        }
      }
    }
    for (Index c = 0; c < tile_columns; ++c) {
      for (int v = 0; v < tile_vectors; ++v) {
        hn::StoreU(t[c][v], d, a + c * stride + v * lanes);
      }
    }
  }
}

// Among the factors of a tile.
enum class Zeros { none, some, all };

inline Zeros count_zeros(const double* x, Index count) {
  const Tag d;
  Vec some = hn::Zero(d);
  Vec all = hn::VecFromMask(d, hn::FirstN(d, static_cast<std::size_t>(lanes)));
  for (Index i = 0; i < count; i += lanes) {
    const Vec zero = hn::VecFromMask(d, hn::Eq(hn::Load(d, x + i), hn::Zero(d)));
    some = hn::Or(some, zero);
    all = hn::And(all, zero);
  }
  if (hn::AllFalse(d, hn::MaskFromVec(some))) {
    return Zeros::none;
  }
  return hn::AllTrue(d, hn::MaskFromVec(all)) ? Zeros::all : Zeros::some;
}

HWY_INLINE void update_whole_tile(Zeros zeros, Index depth, const double* strip, const double* factors, double* a,
                                  Index stride) {
  if (zeros == Zeros::some) {
    update_tile<Skip::zero_factors>(depth, strip, factors, a, stride);
  } else if (zeros == Zeros::none) {
    update_tile<Skip::nothing>(depth, strip, factors, a, stride);
  }
}

// The elements of a tile that exist and are to be updated: of its column c the first min(rows, diagonal + c).
struct TileShape {
  Index rows;
  Index columns;
  Index diagonal = strip_rows;

  bool whole() const { return rows == strip_rows && columns == tile_columns && diagonal >= strip_rows; }
  Index rows_of(Index c) const { return diagonal + c < rows ? (diagonal + c < 0 ? 0 : diagonal + c) : rows; }
};

// A copy of a tile of which not all elements exist. The others are 0.
class TileCopy {
 public:
  TileCopy(const TileShape& shape, double* a, Index stride) : shape_(shape), a_(a), stride_(stride) {
    for (Index c = 0; c < shape_.columns; ++c) {
      for (Index i = 0; i < shape_.rows_of(c); ++i) {
        tile_[c * strip_rows + i] = a_[c * stride_ + i];
      }
    }
  }
  double* data() { return tile_; }
  void store() const {
    for (Index c = 0; c < shape_.columns; ++c) {
      for (Index i = 0; i < shape_.rows_of(c); ++i) {
        a_[c * stride_ + i] = tile_[c * strip_rows + i];
      }
    }
  }

 private:
  alignas(64) double tile_[tile_columns * strip_rows] = {};
  TileShape shape_;
  double* a_;
  Index stride_;
};

inline void update_tile_of(const TileShape& shape, Zeros zeros, Index depth, const double* strip, const double* factors,
                           double* a, Index stride) {
  if (shape.whole() || zeros == Zeros::all) {
    update_whole_tile(zeros, depth, strip, factors, a, stride);
  } else {
    TileCopy copy(shape, a, stride);
    update_whole_tile(zeros, depth, strip, factors, copy.data(), strip_rows);
    copy.store();
  }
}

// factors[p][c] = from[p·step_p + c·step_c]; 1 for columns that do not exist. Fills up to whole vectors.
inline Zeros pack_factors(Index depth, Index columns, const double* from, Index step_p, Index step_c, double* factors) {
  if (columns == tile_columns) {
    for (Index p = 0; p < depth; ++p) {
      for (Index c = 0; c < tile_columns; ++c) {
        factors[p * tile_columns + c] = from[p * step_p + c * step_c];
      }
    }
  } else {
    for (Index p = 0; p < depth; ++p) {
      for (Index c = 0; c < tile_columns; ++c) {
        factors[p * tile_columns + c] = c < columns ? from[p * step_p + c * step_c] : 1;
      }
    }
  }
  const Index count = depth * tile_columns;
  for (Index i = count; i % lanes != 0; ++i) {
    factors[i] = 1;
  }
  return count_zeros(factors, count);
}

// strip[p][row] = from[row·step_row + p·step_p]; 1 for rows that do not exist.
inline void load_strip(Index depth, Index rows, const double* from, Index step_row, Index step_p, double* strip) {
  if (rows == strip_rows && step_row == 1) {
    const Tag d;
    for (Index p = 0; p < depth; ++p) {
      for (Index v = 0; v < strip_rows; v += lanes) {
        hn::Store(hn::LoadU(d, from + p * step_p + v), d, strip + p * strip_rows + v);
      }
    }
    return;
  }
  for (Index i = 0; i < strip_rows; ++i) {
    for (Index p = 0; p < depth; ++p) {
      strip[p * strip_rows + i] = i < rows ? from[i * step_row + p * step_p] : 1;
    }
  }
}

inline void store_strip(Index depth, Index rows, const double* strip, double* to, Index step_row, Index step_p) {
  if (rows == strip_rows && step_row == 1) {
    const Tag d;
    for (Index p = 0; p < depth; ++p) {
      for (Index v = 0; v < strip_rows; v += lanes) {
        hn::StoreU(hn::Load(d, strip + p * strip_rows + v), d, to + p * step_p + v);
      }
    }
    return;
  }
  for (Index i = 0; i < rows; ++i) {
    for (Index p = 0; p < depth; ++p) {
      to[i * step_row + p * step_p] = strip[p * strip_rows + i];
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
