// SPDX-License-Identifier: MIT
// W vectors that a sweep of the sparse product carries together. The columns of x and y are n apart, so the W numbers
// of one row are W scalars in W cache lines; a sweep touches the row of y twice per stored entry. While a sweep runs, y
// is therefore kept in tiles: in every W×W square of W rows and W columns rows and columns are exchanged in place, so
// that the W numbers of one row lie side by side. close() turns the tiles back. Rows that fill no tile stay as they
// are. Only the place of a number changes, never an operation on it.
#pragma once

#include <cstdint>

#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// Element v of `lanes` numbers that are n apart, the first at p. Written so that every address is one register plus one
// scaled register: three_n = 3·n is at hand, and three_on = p + 3·n.
HWY_INLINE const double* lane_address(const double* p, const double* three_on, std::int64_t n, std::int64_t three_n,
                                      int v) {
  switch (v) {
    case 3:
      return p + three_n;
    case 5:
      return three_on + 2 * n;
    case 6:
      return p + 2 * three_n;
    case 7:
      return three_on + 4 * n;
    default:
      return p + v * n;
  }
}

// Lanes first.. of the numbers that are n apart.
template <int first, class D>
HWY_INLINE hn::Vec<D> gather_lanes(D d, const double* p, const double* three_on, std::int64_t n, std::int64_t three_n) {
  if constexpr (hn::MaxLanes(D()) == 2) {
    const __m128d low = _mm_load_sd(lane_address(p, three_on, n, three_n, first));
    return hn::Vec<D>{_mm_loadh_pd(low, lane_address(p, three_on, n, three_n, first + 1))};
  } else {
    const hn::Half<D> half;
    constexpr int middle = first + static_cast<int>(hn::MaxLanes(hn::Half<D>()));
    return hn::Combine(d, gather_lanes<middle>(half, p, three_on, n, three_n),
                       gather_lanes<first>(half, p, three_on, n, three_n));
  }
}

// A square of numbers in registers, transposed as it is stored.
template <class D>
struct Square {
  static constexpr std::int64_t side = hn::MaxLanes(D());
  static_assert(side == 2 || side == 4);
  hn::Vec<D> column[side];

  HWY_INLINE void load(const double* p, std::int64_t stride) {
    for (std::int64_t k = 0; k < side; ++k) {
      column[k] = hn::LoadU(D(), p + k * stride);
    }
  }
  HWY_INLINE void store_transposed(double* p, std::int64_t stride) const {
    const D d;
    if constexpr (side == 2) {
      hn::StoreU(hn::ConcatLowerLower(d, column[1], column[0]), d, p);
      hn::StoreU(hn::ConcatUpperUpper(d, column[1], column[0]), d, p + stride);
    } else {
      const auto even_low = hn::InterleaveLower(d, column[0], column[1]);
      const auto odd_low = hn::InterleaveUpper(d, column[0], column[1]);
      const auto even_high = hn::InterleaveLower(d, column[2], column[3]);
      const auto odd_high = hn::InterleaveUpper(d, column[2], column[3]);
      hn::StoreU(hn::ConcatLowerLower(d, even_high, even_low), d, p);
      hn::StoreU(hn::ConcatLowerLower(d, odd_high, odd_low), d, p + stride);
      hn::StoreU(hn::ConcatUpperUpper(d, even_high, even_low), d, p + 2 * stride);
      hn::StoreU(hn::ConcatUpperUpper(d, odd_high, odd_low), d, p + 3 * stride);
    }
  }
};

// W = 2, 4 or 8 vectors in registers. Rows count from 1, as the caller's column indices do.
template <std::int64_t W>
class TiledGroup {
  using D = hn::CappedTag<double, W>;
  static constexpr std::int64_t lanes = hn::MaxLanes(D());
  static constexpr std::int64_t parts = W / lanes;

 public:
  static constexpr bool has_untiled_rows = true;
  struct Pack {
    hn::Vec<D> part[parts];
  };

  HWY_INLINE TiledGroup(std::int64_t n, const double* x, double* y)
      : n_(n), three_n_(3 * n), tiled_(n - n % W), x_(x), y_(y) {}

  std::int64_t tiled_rows() const { return tiled_; }

  HWY_INLINE Pack x(std::int64_t j) const {
    const double* const p = x_ + (j - 1);
    Pack result;
    gather_parts<0>(result, p, W > 2 ? p + three_n_ : p);
    return result;
  }

  static HWY_INLINE Pack product(double a, const Pack& b) {
    Pack result;
    const auto factor = hn::Set(D(), a);
    for (std::int64_t k = 0; k < parts; ++k) {
      result.part[k] = hn::Mul(factor, b.part[k]);
    }
    return result;
  }
  static HWY_INLINE Pack sum(const Pack& b, const Pack& c) {
    Pack result;
    for (std::int64_t k = 0; k < parts; ++k) {
      result.part[k] = hn::Add(b.part[k], c.part[k]);
    }
    return result;
  }

  // Row j of y in its tile, j <= tiled_rows().
  HWY_INLINE Pack y(std::int64_t j) const {
    const double* const at = y_ + tile_position(j);
    Pack result;
    for (std::int64_t k = 0; k < parts; ++k) {
      result.part[k] = hn::LoadU(D(), at + k * lanes);
    }
    return result;
  }
  HWY_INLINE void set_y(std::int64_t j, const Pack& value) const {
    double* const at = y_ + tile_position(j);
    for (std::int64_t k = 0; k < parts; ++k) {
      hn::StoreU(value.part[k], D(), at + k * lanes);
    }
  }

  // Row j of y in the caller's layout.
  HWY_INLINE void set_untiled_y(std::int64_t j, const Pack& value) const {
    double number[W];
    unpack(value, number);
    for (std::int64_t v = 0; v < W; ++v) {
      y_[v * n_ + (j - 1)] = number[v];
    }
  }
  HWY_INLINE void add_untiled_y(std::int64_t j, const Pack& term) const {
    double number[W];
    unpack(term, number);
    for (std::int64_t v = 0; v < W; ++v) {
      double& y = y_[v * n_ + (j - 1)];
      y = y + number[v];
    }
  }

  // Puts the tiles back into the caller's layout.
  void close() const {
    using Part = Square<hn::CappedTag<double, (W < 4 ? W : 4)>>;
    for (std::int64_t row = 0; row < tiled_; row += W) {
      for (std::int64_t b = 0; b < W; b += Part::side) {
        for (std::int64_t c = 0; c <= b; c += Part::side) {
          double* const below = y_ + (row + b + c * n_);
          double* const above = y_ + (row + c + b * n_);
          Part first;
          Part second;
          first.load(below, n_);
          second.load(above, n_);
          first.store_transposed(above, n_);
          second.store_transposed(below, n_);
        }
      }
    }
  }

 private:
  // Row r of a tile (from 0) is kept where column r of the tile was: r·n + (j-1) - r.
  HWY_INLINE std::int64_t tile_position(std::int64_t j) const { return ((j - 1) & (W - 1)) * (n_ - 1) + (j - 1); }

  template <int k>
  HWY_INLINE void gather_parts(Pack& result, const double* p, const double* three_on) const {
    result.part[k] = gather_lanes<k* static_cast<int>(lanes)>(D(), p, three_on, n_, three_n_);
    if constexpr (k + 1 < parts) {
      gather_parts<k + 1>(result, p, three_on);
    }
  }
  static HWY_INLINE void unpack(const Pack& value, double* number) {
    for (std::int64_t k = 0; k < parts; ++k) {
      hn::StoreU(value.part[k], D(), number + k * lanes);
    }
  }

  std::int64_t n_;
  std::int64_t three_n_;
  std::int64_t tiled_;
  const double* x_;
  double* y_;
};

// One or three vectors as scalars, in the caller's layout.
template <std::int64_t W>
class PlainGroup {
 public:
  static constexpr bool has_untiled_rows = false;
  struct Pack {
    double number[W];
  };

  HWY_INLINE PlainGroup(std::int64_t n, const double* x, double* y) : n_(n), x_(x), y_(y) {}

  std::int64_t tiled_rows() const { return n_; }

  HWY_INLINE Pack x(std::int64_t j) const {
    Pack result;
    for (std::int64_t v = 0; v < W; ++v) {
      result.number[v] = x_[v * n_ + (j - 1)];
    }
    return result;
  }
  static HWY_INLINE Pack product(double a, const Pack& b) {
    Pack result;
    for (std::int64_t v = 0; v < W; ++v) {
      result.number[v] = a * b.number[v];
    }
    return result;
  }
  static HWY_INLINE Pack sum(const Pack& b, const Pack& c) {
    Pack result;
    for (std::int64_t v = 0; v < W; ++v) {
      result.number[v] = b.number[v] + c.number[v];
    }
    return result;
  }
  HWY_INLINE Pack y(std::int64_t j) const {
    Pack result;
    for (std::int64_t v = 0; v < W; ++v) {
      result.number[v] = y_[v * n_ + (j - 1)];
    }
    return result;
  }
  HWY_INLINE void set_y(std::int64_t j, const Pack& value) const {
    for (std::int64_t v = 0; v < W; ++v) {
      y_[v * n_ + (j - 1)] = value.number[v];
    }
  }
  HWY_INLINE void set_untiled_y(std::int64_t j, const Pack& value) const { set_y(j, value); }
  void close() const {}

 private:
  std::int64_t n_;
  const double* x_;
  double* y_;
};

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
