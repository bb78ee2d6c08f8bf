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

// The numbers p[0], p[stride], p[2·stride], ... in one register.
template <class D>
HWY_INLINE hn::Vec<D> gather_lanes(D d, const double* p, std::int64_t stride) {
  if constexpr (hn::MaxLanes(D()) == 1) {
    return hn::LoadU(d, p);
  } else {
    const hn::Half<D> half;
    constexpr auto in_half = static_cast<std::int64_t>(hn::MaxLanes(hn::Half<D>()));
    return hn::Combine(d, gather_lanes(half, p + in_half * stride, stride), gather_lanes(half, p, stride));
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

// W = 2, 4 or 8 vectors in registers.
template <std::int64_t W>
class TiledGroup {
  using D = hn::CappedTag<double, W>;
  static constexpr std::int64_t lanes = hn::MaxLanes(D());
  static constexpr std::int64_t parts = W / lanes;

 public:
  struct Pack {
    hn::Vec<D> part[parts];
  };

  HWY_INLINE TiledGroup(std::int64_t n, const double* x, double* y) : n_(n), tiled_(n - n % W), x_(x), y_(y) {
    for (std::int64_t t = 0; t < W; ++t) {
      row_[t] = y + t * (n - 1);
    }
  }

  std::int64_t tiled_rows() const { return tiled_; }

  HWY_INLINE Pack x(std::int64_t j) const {
    Pack result;
    for (std::int64_t k = 0; k < parts; ++k) {
      result.part[k] = gather_lanes(D(), x_ + k * lanes * n_ + j, n_);
    }
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

  // Row j of y for j < tiled_rows().
  HWY_INLINE Pack tiled_y(std::int64_t j) const {
    const double* const at = row_[j & (W - 1)] + j;
    Pack result;
    for (std::int64_t k = 0; k < parts; ++k) {
      result.part[k] = hn::LoadU(D(), at + k * lanes);
    }
    return result;
  }
  HWY_INLINE void set_tiled_y(std::int64_t j, const Pack& value) {
    double* const at = row_[j & (W - 1)] + j;
    for (std::int64_t k = 0; k < parts; ++k) {
      hn::StoreU(value.part[k], D(), at + k * lanes);
    }
  }
  HWY_INLINE void add_y(std::int64_t j, const Pack& term) {
    if (j < tiled_) [[likely]] {
      set_tiled_y(j, sum(tiled_y(j), term));
    } else {
      add_untiled_y(j, term);
    }
  }
  HWY_INLINE void set_y(std::int64_t j, const Pack& value) {
    if (j < tiled_) [[likely]] {
      set_tiled_y(j, value);
    } else {
      set_untiled_y(j, value);
    }
  }

  // Row j of y in the caller's layout.
  HWY_INLINE void set_untiled_y(std::int64_t j, const Pack& value) {
    double number[W];
    unpack(value, number);
    for (std::int64_t v = 0; v < W; ++v) {
      y_[v * n_ + j] = number[v];
    }
  }

  // Puts the tiles back into the caller's layout.
  void close() {
    using Quarter = Square<hn::CappedTag<double, (W < 4 ? W : 4)>>;
    for (std::int64_t row = 0; row < tiled_; row += W) {
      for (std::int64_t b = 0; b < W; b += Quarter::side) {
        for (std::int64_t c = 0; c <= b; c += Quarter::side) {
          double* const below = y_ + row + b + c * n_;
          double* const above = y_ + row + c + b * n_;
          Quarter first;
          Quarter second;
          first.load(below, n_);
          second.load(above, n_);
          first.store_transposed(above, n_);
          second.store_transposed(below, n_);
        }
      }
    }
  }

 private:
  static HWY_INLINE void unpack(const Pack& value, double* number) {
    for (std::int64_t k = 0; k < parts; ++k) {
      hn::StoreU(value.part[k], D(), number + k * lanes);
    }
  }
  HWY_NOINLINE void add_untiled_y(std::int64_t j, const Pack& term) {
    double number[W];
    unpack(term, number);
    for (std::int64_t v = 0; v < W; ++v) {
      y_[v * n_ + j] = y_[v * n_ + j] + number[v];
    }
  }

  std::int64_t n_;
  std::int64_t tiled_;
  const double* x_;
  double* y_;
  double* row_[W];  // row_[j mod W] + j is row j of the tiles
};

// One or three vectors as scalars, in the caller's layout.
template <std::int64_t W>
class PlainGroup {
 public:
  struct Pack {
    double number[W];
  };

  HWY_INLINE PlainGroup(std::int64_t n, const double* x, double* y) : n_(n), x_(x), y_(y) {}

  std::int64_t tiled_rows() const { return n_; }

  HWY_INLINE Pack x(std::int64_t j) const {
    Pack result;
    for (std::int64_t v = 0; v < W; ++v) {
      result.number[v] = x_[v * n_ + j];
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
  HWY_INLINE Pack tiled_y(std::int64_t j) const {
    Pack result;
    for (std::int64_t v = 0; v < W; ++v) {
      result.number[v] = y_[v * n_ + j];
    }
    return result;
  }
  HWY_INLINE void set_y(std::int64_t j, const Pack& value) {
    for (std::int64_t v = 0; v < W; ++v) {
      y_[v * n_ + j] = value.number[v];
    }
  }
  HWY_INLINE void set_tiled_y(std::int64_t j, const Pack& value) { set_y(j, value); }
  HWY_INLINE void set_untiled_y(std::int64_t j, const Pack& value) { set_y(j, value); }
  HWY_INLINE void add_y(std::int64_t j, const Pack& term) { set_y(j, sum(tiled_y(j), term)); }
  void close() {}

 private:
  std::int64_t n_;
  const double* x_;
  double* y_;
};

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
