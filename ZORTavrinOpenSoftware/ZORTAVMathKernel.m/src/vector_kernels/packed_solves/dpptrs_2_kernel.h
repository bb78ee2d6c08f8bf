// SPDX-License-Identifier: MIT
// (Uᵀ·U)⁻¹·B for several right-hand sides, one a vector lane. dpptrs_2.cpp states the order of the operations on an
// element, which no lane departs from.
//
// The right-hand sides are taken in strips, the rows in blocks. The rows of a block are copied into a buffer, where the
// elements of one row stand side by side, and solved there; then the block's products are subtracted from the rows that
// are still to come, a tile of neighbouring rows in registers at a time. Several strips go through the blocks together,
// so that U comes from memory once for all of them. Included by packed_solve_kernel_unit.cpp only.
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
constexpr std::size_t strip_parts = solve_lanes == 2 ? 4 : solve_lanes == 4 ? 2 : 1;
constexpr std::size_t tile_rows = solve_lanes == 8 ? 8 : solve_lanes == 4 ? 6 : 3;

// A block of one strip of eight fills half of a first-level cache of 32 KiB.
constexpr std::size_t block_rows = 256;
constexpr std::size_t strips_together = 4;

// Fewer right-hand sides than this are faster one by one.
constexpr std::size_t worth_a_strip = 4;

template <std::size_t Parts>
class StripSolve {
 public:
  static constexpr std::size_t width = Parts * solve_lanes;

  // `count` right-hand sides, at most strips_together·width, ldb elements apart; lanes beyond them hold zeros that go
  // nowhere.
  StripSolve(std::size_t n, const double* ap, double* b, std::ptrdiff_t ldb, std::size_t count)
      : n_(n), ap_(ap), b_(b), ldb_(ldb), count_(count), strips_((count + width - 1) / width) {}

  void forward() {
    for (std::size_t begin = 0; begin < n_;) {
      const std::size_t end = n_ - begin > block_rows ? begin + block_rows : n_;
      for (std::size_t s = 0; s < strips_; ++s) {
        load(s, begin, end - begin, block_[s]);
        solve_block_ascending<tile_rows>(begin, begin, end, block_[s]);
        store(s, begin, end - begin, block_[s]);
      }
      update_below<tile_rows>(end, begin, end);
      begin = end;
    }
  }

  void backward() {
    for (std::size_t end = n_; end > 0;) {
      const std::size_t begin = end > block_rows ? end - block_rows : 0;
      for (std::size_t s = 0; s < strips_; ++s) {
        load(s, begin, end - begin, block_[s]);
        solve_block_descending<tile_rows>(end, begin, end, block_[s]);
        store(s, begin, end - begin, block_[s]);
      }
      update_above<tile_rows>(begin, begin, end);
      end = begin;
    }
  }

 private:
  using Vec = hn::Vec<SolveTag>;
  static constexpr SolveTag d{};

  template <std::size_t Rows>
  using Tile = Vec[Rows][Parts];

  double* right_hand_side(std::size_t strip, std::size_t r, std::size_t row) const {
    return b_ + static_cast<std::ptrdiff_t>(strip * width + r) * ldb_ + row;
  }
  std::size_t width_of(std::size_t strip) const {
    const std::size_t left = count_ - strip * width;
    return left < width ? left : width;
  }

  void load(std::size_t strip, std::size_t row, std::size_t rows, double* to) const {
    const std::size_t filled = width_of(strip);
    for (std::size_t r = 0; r < filled; ++r) {
      const double* const from = right_hand_side(strip, r, row);
      for (std::size_t i = 0; i < rows; ++i) {
        to[i * width + r] = from[i];
      }
    }
    for (std::size_t r = filled; r < width; ++r) {
      for (std::size_t i = 0; i < rows; ++i) {
        to[i * width + r] = 0;
      }
    }
  }

  void store(std::size_t strip, std::size_t row, std::size_t rows, const double* from) const {
    const std::size_t filled = width_of(strip);
    for (std::size_t r = 0; r < filled; ++r) {
      double* const to = right_hand_side(strip, r, row);
      for (std::size_t i = 0; i < rows; ++i) {
        to[i] = from[i * width + r];
      }
    }
  }

  template <std::size_t Rows>
  static HWY_INLINE void take(const double* from, Tile<Rows>& t) {
#pragma GCC unroll 8
    for (std::size_t c = 0; c < Rows; ++c) {
#pragma GCC unroll 4
      for (std::size_t p = 0; p < Parts; ++p) {
        t[c][p] = hn::Load(d, from + c * width + p * solve_lanes);
      }
    }
  }
  template <std::size_t Rows>
  static HWY_INLINE void put(const Tile<Rows>& t, double* to) {
#pragma GCC unroll 8
    for (std::size_t c = 0; c < Rows; ++c) {
#pragma GCC unroll 4
      for (std::size_t p = 0; p < Parts; ++p) {
        hn::Store(t[c][p], d, to + c * width + p * solve_lanes);
      }
    }
  }

  static HWY_INLINE void subtract(Vec (&t)[Parts], double u, const Vec (&y)[Parts]) {
    const Vec factor = hn::Set(d, u);
#pragma GCC unroll 4
    for (std::size_t p = 0; p < Parts; ++p) {
      t[p] = hn::Sub(t[p], hn::Mul(factor, y[p]));
    }
  }
  static HWY_INLINE void divide(Vec (&t)[Parts], double u) {
    const Vec divisor = hn::Set(d, u);
#pragma GCC unroll 4
    for (std::size_t p = 0; p < Parts; ++p) {
      t[p] = hn::Div(t[p], divisor);
    }
  }
  static HWY_INLINE void take_row(const double* from, Vec (&y)[Parts]) {
#pragma GCC unroll 4
    for (std::size_t p = 0; p < Parts; ++p) {
      y[p] = hn::Load(d, from + p * solve_lanes);
    }
  }

  // tile := tile - (rows j..j+Rows-1 of Uᵀ)·(rows begin..end-1 of the block, which stand at y). Not inlined, as the
  // next one: what surrounds the loop would take registers from its sums.
  template <std::size_t Rows>
  static HWY_NOINLINE void subtract_ascending(const double* ap, std::size_t j, std::size_t begin, std::size_t end,
                                              const double* y, double* tile) {
    const double* u[Rows];
#pragma GCC unroll 8
    for (std::size_t c = 0; c < Rows; ++c) {
      u[c] = upper_column(ap, j + c) + begin;
    }
    Tile<Rows> t;
    take<Rows>(tile, t);
    for (std::size_t i = 0; i < end - begin; ++i) {
      Vec yi[Parts];
      take_row(y + i * width, yi);
#pragma GCC unroll 8
      for (std::size_t c = 0; c < Rows; ++c) {
        subtract(t[c], u[c][i], yi);
      }
    }
    put<Rows>(t, tile);
  }

  // tile := tile - (rows i..i+Rows-1 of U)·(rows begin..end-1 of the block, which stand at y), the last one first.
  template <std::size_t Rows>
  static HWY_NOINLINE void subtract_descending(const double* ap, std::size_t i, std::size_t begin, std::size_t end,
                                               const double* y, double* tile) {
    Tile<Rows> t;
    take<Rows>(tile, t);
    const double* u = upper_column(ap, end) + i;
    for (std::size_t j = end; j-- > begin;) {
      u -= j + 1;
      Vec yj[Parts];
      take_row(y + (j - begin) * width, yj);
#pragma GCC unroll 8
      for (std::size_t c = 0; c < Rows; ++c) {
        subtract(t[c], u[c], yj);
      }
    }
    put<Rows>(t, tile);
  }

  // Rows j..j+Rows-1 among themselves.
  template <std::size_t Rows>
  static HWY_NOINLINE void solve_tile_ascending(const double* ap, std::size_t j, double* tile) {
    Tile<Rows> t;
    take<Rows>(tile, t);
#pragma GCC unroll 8
    for (std::size_t c = 0; c < Rows; ++c) {
      const double* const u = upper_column(ap, j + c) + j;
#pragma GCC unroll 8
      for (std::size_t k = 0; k < c; ++k) {
        subtract(t[c], u[k], t[k]);
      }
      divide(t[c], u[c]);
    }
    put<Rows>(t, tile);
  }

  template <std::size_t Rows>
  static HWY_NOINLINE void solve_tile_descending(const double* ap, std::size_t j, double* tile) {
    Tile<Rows> t;
    take<Rows>(tile, t);
#pragma GCC unroll 8
    for (std::size_t step = 1; step <= Rows; ++step) {
      const std::size_t c = Rows - step;
      const double* const u = upper_column(ap, j + c) + j;
      divide(t[c], u[c]);
#pragma GCC unroll 8
      for (std::size_t k = 0; k < c; ++k) {
        subtract(t[k], u[k], t[c]);
      }
    }
    put<Rows>(t, tile);
  }

  // The rows of the block begin..end-1 from `row` on, in tiles of Rows and then of fewer.
  template <std::size_t Rows>
  void solve_block_ascending(std::size_t row, std::size_t begin, std::size_t end, double* block) const {
    for (; row + Rows <= end; row += Rows) {
      double* const tile = block + (row - begin) * width;
      subtract_ascending<Rows>(ap_, row, begin, row, block, tile);
      solve_tile_ascending<Rows>(ap_, row, tile);
    }
    if constexpr (Rows > 1) {
      solve_block_ascending<Rows / 2>(row, begin, end, block);
    }
  }

  // The rows of the block begin..end-1 before `row`.
  template <std::size_t Rows>
  void solve_block_descending(std::size_t row, std::size_t begin, std::size_t end, double* block) const {
    for (; row >= begin + Rows; row -= Rows) {
      double* const solved = block + (row - begin) * width;
      double* const tile = solved - Rows * width;
      subtract_descending<Rows>(ap_, row - Rows, row, end, solved, tile);
      solve_tile_descending<Rows>(ap_, row - Rows, tile);
    }
    if constexpr (Rows > 1) {
      solve_block_descending<Rows / 2>(row, begin, end, block);
    }
  }

  // The rows from `row` on lose their products with the block begin..end-1.
  template <std::size_t Rows>
  void update_below(std::size_t row, std::size_t begin, std::size_t end) {
    for (; row + Rows <= n_; row += Rows) {
      for (std::size_t s = 0; s < strips_; ++s) {
        load(s, row, Rows, tile_);
        subtract_ascending<Rows>(ap_, row, begin, end, block_[s], tile_);
        store(s, row, Rows, tile_);
      }
    }
    if constexpr (Rows > 1) {
      update_below<Rows / 2>(row, begin, end);
    }
  }

  // The rows before `row` do.
  template <std::size_t Rows>
  void update_above(std::size_t row, std::size_t begin, std::size_t end) {
    for (; row >= Rows; row -= Rows) {
      for (std::size_t s = 0; s < strips_; ++s) {
        load(s, row - Rows, Rows, tile_);
        subtract_descending<Rows>(ap_, row - Rows, begin, end, block_[s], tile_);
        store(s, row - Rows, Rows, tile_);
      }
    }
    if constexpr (Rows > 1) {
      update_above<Rows / 2>(row, begin, end);
    }
  }

  std::size_t n_;
  const double* ap_;
  double* b_;
  std::ptrdiff_t ldb_;
  std::size_t count_;
  std::size_t strips_;
  alignas(64) double block_[strips_together][block_rows * width];
  alignas(64) double tile_[tile_rows * width];
};

template <std::size_t Parts>
void solve_strips(std::size_t n, const double* ap, double* b, std::ptrdiff_t ldb, std::size_t count) {
  StripSolve<Parts> strips(n, ap, b, ldb, count);
  strips.forward();
  strips.backward();
}

void solve_cholesky(std::size_t n, std::size_t nrhs, const double* ap, double* b, std::ptrdiff_t ldb) {
  constexpr std::size_t narrow_parts = strip_parts > 1 ? strip_parts / 2 : 1;
  constexpr std::size_t most_together = strips_together * strip_parts * solve_lanes;
  while (nrhs > 0) {
    std::size_t count = 1;
    if (nrhs < worth_a_strip) {
      solve_upper_transposed(n, ap, Diagonal::given, b);
      solve_upper(n, ap, Diagonal::given, ZeroElement::used, b);
    } else if (nrhs <= narrow_parts * solve_lanes) {
      count = nrhs;
      solve_strips<narrow_parts>(n, ap, b, ldb, count);
    } else {
      count = nrhs < most_together ? nrhs : most_together;
      solve_strips<strip_parts>(n, ap, b, ldb, count);
    }
    nrhs -= count;
    b += static_cast<std::ptrdiff_t>(count) * ldb;
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
