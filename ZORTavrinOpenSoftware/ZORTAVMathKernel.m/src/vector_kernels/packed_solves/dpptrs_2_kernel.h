// SPDX-License-Identifier: MIT
// (Uᵀ·U)⁻¹·B for several right-hand sides, one a vector lane. dpptrs_2.cpp states the order of the operations on an
// element, which no lane departs from.
//
// A strip of right-hand sides is solved in blocks of rows. The rows of a block are copied into a buffer, where the
// elements of one row stand side by side, and solved there; then the block's products are subtracted from the rows that
// are still to come, a tile of neighbouring rows in registers at a time. Included by packed_solve_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "dispatch/kernel_unit.h"
#include "vector_kernels/packed_solves/e_dtpsv_kernel.h"
#include "vector_kernels/packed_solves/e_dtpsv_transposed_kernel.h"
#include "vector_kernels/packed_solves/packed_triangle.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// Registers of right-hand sides in a strip and rows in a tile: as many sums as the registers hold beside a row of the
// block, an element of U and a product.
constexpr int strip_parts = solve_lanes == 2 ? 4 : 2;
constexpr int tile_rows = solve_lanes == 8 ? 8 : solve_lanes == 4 ? 6 : 3;

// With strips of 16 the buffer fills a first-level cache of 32 KiB.
constexpr std::size_t block_rows = 256;

// Fewer right-hand sides than this are faster one by one.
constexpr std::size_t worth_a_strip = 4;

template <int Parts>
class StripSolve {
 public:
  static constexpr std::size_t width = Parts * solve_lanes;

  // `count` right-hand sides, at most `width`, ldb elements apart; the other lanes are zeros that go nowhere.
  StripSolve(std::size_t n, const double* ap, double* b, std::ptrdiff_t ldb, std::size_t count)
      : n_(n), ap_(ap), b_(b), ldb_(ldb), count_(count) {}

  void forward() {
    for (std::size_t begin = 0; begin < n_;) {
      const std::size_t end = n_ - begin > block_rows ? begin + block_rows : n_;
      load(begin, end - begin, block_);
      forward_tiles<tile_rows, true>(begin, end, begin, end);
      store(begin, end - begin, block_);
      forward_tiles<tile_rows, false>(end, n_, begin, end);
      begin = end;
    }
  }

  void backward() {
    for (std::size_t end = n_; end > 0;) {
      const std::size_t begin = end > block_rows ? end - block_rows : 0;
      load(begin, end - begin, block_);
      backward_tiles<tile_rows, true>(begin, end, begin, end);
      store(begin, end - begin, block_);
      backward_tiles<tile_rows, false>(0, begin, begin, end);
      end = begin;
    }
  }

 private:
  using Vec = hn::Vec<SolveTag>;
  static constexpr SolveTag d{};

  template <int Rows>
  using Tile = Vec[Rows][Parts];

  void load(std::size_t row, std::size_t rows, double* to) const {
    for (std::size_t r = 0; r < count_; ++r) {
      const double* const from = b_ + static_cast<std::ptrdiff_t>(r) * ldb_ + row;
      for (std::size_t i = 0; i < rows; ++i) {
        to[i * width + r] = from[i];
      }
    }
    for (std::size_t r = count_; r < width; ++r) {
      for (std::size_t i = 0; i < rows; ++i) {
        to[i * width + r] = 0;
      }
    }
  }

  void store(std::size_t row, std::size_t rows, const double* from) const {
    for (std::size_t r = 0; r < count_; ++r) {
      double* const to = b_ + static_cast<std::ptrdiff_t>(r) * ldb_ + row;
      for (std::size_t i = 0; i < rows; ++i) {
        to[i] = from[i * width + r];
      }
    }
  }

  template <int Rows>
  static HWY_INLINE void take(const double* from, Tile<Rows>& t) {
    for (std::size_t c = 0; c < Rows; ++c) {
      for (std::size_t p = 0; p < Parts; ++p) {
        t[c][p] = hn::Load(d, from + c * width + p * solve_lanes);
      }
    }
  }
  template <int Rows>
  static HWY_INLINE void put(const Tile<Rows>& t, double* to) {
    for (std::size_t c = 0; c < Rows; ++c) {
      for (std::size_t p = 0; p < Parts; ++p) {
        hn::Store(t[c][p], d, to + c * width + p * solve_lanes);
      }
    }
  }

  static HWY_INLINE void subtract(Vec (&t)[Parts], double u, const Vec (&y)[Parts]) {
    const Vec factor = hn::Set(d, u);
    for (std::size_t p = 0; p < Parts; ++p) {
      t[p] = hn::Sub(t[p], hn::Mul(factor, y[p]));
    }
  }
  static HWY_INLINE void divide(Vec (&t)[Parts], double u) {
    const Vec divisor = hn::Set(d, u);
    for (std::size_t p = 0; p < Parts; ++p) {
      t[p] = hn::Div(t[p], divisor);
    }
  }
  static HWY_INLINE void take_row(const double* from, Vec (&y)[Parts]) {
    for (std::size_t p = 0; p < Parts; ++p) {
      y[p] = hn::Load(d, from + p * solve_lanes);
    }
  }

  // Rows j..j+Rows-1 of Uᵀ: the products with the rows begin..end-1 of the block.
  template <int Rows>
  HWY_INLINE void subtract_ascending(std::size_t j, std::size_t begin, std::size_t end, Tile<Rows>& t) const {
    const double* u[Rows];
    for (std::size_t c = 0; c < Rows; ++c) {
      u[c] = upper_column(ap_, j + c) + begin;
    }
    for (std::size_t i = 0; i < end - begin; ++i) {
      Vec y[Parts];
      take_row(block_ + i * width, y);
      for (std::size_t c = 0; c < Rows; ++c) {
        subtract(t[c], u[c][i], y);
      }
    }
  }

  // Rows i..i+Rows-1 of U: the products with the rows begin..end-1, the last one first, of the block from `origin` on.
  template <int Rows>
  HWY_INLINE void subtract_descending(std::size_t i, std::size_t begin, std::size_t end, std::size_t origin,
                                      Tile<Rows>& t) const {
    const double* u = upper_column(ap_, end) + i;
    for (std::size_t j = end; j-- > begin;) {
      u -= j + 1;
      Vec y[Parts];
      take_row(block_ + (j - origin) * width, y);
      for (std::size_t c = 0; c < Rows; ++c) {
        subtract(t[c], u[c], y);
      }
    }
  }

  // Rows first..last-1 against the block's rows begin..end-1, tiles of Rows and then of fewer. Inside the block a tile
  // takes what is solved before it and is solved itself.
  template <int Rows, bool inside>
  void forward_tiles(std::size_t first, std::size_t last, std::size_t begin, std::size_t end) {
    for (; first + Rows <= last; first += Rows) {
      Tile<Rows> t;
      if constexpr (inside) {
        double* const own = block_ + (first - begin) * width;
        take<Rows>(own, t);
        subtract_ascending<Rows>(first, begin, first, t);
        for (std::size_t c = 0; c < Rows; ++c) {
          const double* const u = upper_column(ap_, first + c) + first;
          for (std::size_t k = 0; k < c; ++k) {
            subtract(t[c], u[k], t[k]);
          }
          divide(t[c], u[c]);
        }
        put<Rows>(t, own);
      } else {
        load(first, Rows, tile_);
        take<Rows>(tile_, t);
        subtract_ascending<Rows>(first, begin, end, t);
        put<Rows>(t, tile_);
        store(first, Rows, tile_);
      }
    }
    if constexpr (Rows > 1) {
      forward_tiles<Rows / 2, inside>(first, last, begin, end);
    }
  }

  // The same for U: the tiles run from the last row to the first.
  template <int Rows, bool inside>
  void backward_tiles(std::size_t first, std::size_t last, std::size_t begin, std::size_t end) {
    for (; first + Rows <= last; last -= Rows) {
      Tile<Rows> t;
      const std::size_t row = last - Rows;
      if constexpr (inside) {
        double* const own = block_ + (row - begin) * width;
        take<Rows>(own, t);
        subtract_descending<Rows>(row, last, end, begin, t);
        for (std::size_t c = Rows; c-- > 0;) {
          const double* const u = upper_column(ap_, row + c) + row;
          divide(t[c], u[c]);
          for (std::size_t k = 0; k < c; ++k) {
            subtract(t[k], u[k], t[c]);
          }
        }
        put<Rows>(t, own);
      } else {
        load(row, Rows, tile_);
        take<Rows>(tile_, t);
        subtract_descending<Rows>(row, begin, end, begin, t);
        put<Rows>(t, tile_);
        store(row, Rows, tile_);
      }
    }
    if constexpr (Rows > 1) {
      backward_tiles<Rows / 2, inside>(first, last, begin, end);
    }
  }

  std::size_t n_;
  const double* ap_;
  double* b_;
  std::ptrdiff_t ldb_;
  std::size_t count_;
  alignas(64) double block_[block_rows * width];
  alignas(64) double tile_[tile_rows * width];
};

template <int Parts>
void solve_strip(std::size_t n, const double* ap, double* b, std::ptrdiff_t ldb, std::size_t count) {
  StripSolve<Parts> strip(n, ap, b, ldb, count);
  strip.forward();
  strip.backward();
}

void solve_cholesky(std::size_t n, std::size_t nrhs, const double* ap, double* b, std::ptrdiff_t ldb) {
  constexpr std::size_t narrow_parts = strip_parts / 2;
  while (nrhs > 0) {
    std::size_t count = 1;
    if (nrhs < worth_a_strip) {
      solve_upper_transposed(n, ap, Diagonal::given, b);
      solve_upper(n, ap, Diagonal::given, ZeroElement::used, b);
    } else if (nrhs <= narrow_parts * solve_lanes) {
      count = nrhs;
      solve_strip<narrow_parts>(n, ap, b, ldb, count);
    } else {
      count = nrhs < strip_parts * solve_lanes ? nrhs : strip_parts * solve_lanes;
      solve_strip<strip_parts>(n, ap, b, ldb, count);
    }
    nrhs -= count;
    b += static_cast<std::ptrdiff_t>(count) * ldb;
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
