// SPDX-License-Identifier: MIT
// Inversion of a symmetric matrix on its upper triangle, panel by panel. Included by inversion_kernel_unit.cpp only.
//
// c(i,p) is what step p finds at (i,p) for i < p and at (p,i) for i > p; it stays there until the panel is done. The
// multipliers are t(p,j) = ∓c(j,p)/pivot, minus for j < p. The lower triangle keeps them at (p,j) for j < p and at
// (j,p) for j > p, as the plain steps would: a refused pivot leaves them there, and the panel finds them there until
// then.
#pragma once

#include <cstdint>
#include <cstring>

#include "algorithms/inversion/eaxinv_panel_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

class SymmetricInversion {
 public:
  SymmetricInversion(Index n, Index lda, double* a, bool tested) : n_(n), lda_(lda), a_(a), tested_(tested) {}

  // False when a tested pivot was refused; then the steps before it are done.
  bool invert() {
    bool accepted = true;
    for (first_ = 0; first_ < n_ && accepted; first_ = after_) {
      accepted = eliminate_block(n_ - first_ < panel_pivots ? n_ - first_ : panel_pivots);
      after_ = first_ + block_.pivots;
      solve_above();
      solve_below();
      update_above();
      update_below();
      finish_rows();
      store_block();
    }
    if (accepted) {
      copy_to_lower();
    }
    return accepted;
  }

 private:
  // A tested pivot must be larger in magnitude, whatever the scale of the matrix.
  static constexpr double smallest_pivot = 1e-8;

  double& at(Index i, Index j) const { return a_[i + j * lda_]; }

  static Index part(Index from, Index end, Index most) { return end - from < most ? end - from : most; }

  // The panel's own triangle on a copy, up to the first refused pivot.
  bool eliminate_block(Index pivots) {
    for (Index j = 0; j < pivots; ++j) {
      std::memcpy(block_.a[j], &at(first_, first_ + j), static_cast<std::size_t>(j + 1) * sizeof *a_);
    }
    std::memset(block_.t, 0, sizeof block_.t);
    std::memset(block_.c, 0, sizeof block_.c);
    std::memset(mirrored_, 0, sizeof mirrored_);
    block_.zeros = Zeros::none;
    for (Index p = 0; p < pivots; ++p) {
      if (tested_ && __builtin_fabs(block_.a[p][p]) <= smallest_pivot) {
        block_.pivots = p;
        return false;
      }
      eliminate_in_block(p, pivots);
    }
    block_.pivots = pivots;
    return true;
  }

  void eliminate_in_block(Index p, Index pivots) {
    const double r = -1 / block_.a[p][p];
    block_.r[p] = r;
    double c[panel_pivots];
    for (Index i = 0; i < pivots; ++i) {
      c[i] = i < p ? block_.a[p][i] : i > p ? block_.a[i][p] : 0;
      mirrored_[i / tile_columns][p][i % tile_columns] = c[i];
      if (i < p) {
        block_.column(i, p) = c[i];
      }
    }
    for (Index j = 0; j < pivots; ++j) {
      if (j == p) {
        continue;
      }
      const double t = (j < p ? -c[j] : c[j]) * r;
      block_.multiplier(p, j) = t;
      block_.zeros = t == 0 ? Zeros::some : block_.zeros;
      double* __restrict const aj = block_.a[j];
      if (j > p) {
        aj[p] = t;
      }
      if (t != 0) {
        for (Index i = 0; i <= j; ++i) {
          aj[i] = aj[i] + t * c[i];
        }
      }
    }
    for (Index j = 0; j < p; ++j) {
      block_.a[p][j] = block_.multiplier(p, j);
    }
    block_.a[p][p] = -r;
  }

  // c of the rows above the panel, and their multipliers.
  void solve_above() {
    const Index pivots = block_.pivots;
    for (Index i = 0; i < first_; i += strip_rows) {
      const Index rows = part(i, first_, strip_rows);
      load_strip(pivots, rows, &at(i, first_), 1, lda_, strips_);
      solve_strip<Solve::plain>(pivots, block_.t, block_.zeros, block_.r, strips_, strips_);
      store_strip(pivots, rows, strips_, &at(i, first_), 1, lda_);
      turn_into_multipliers(strips_, multipliers_);
      store_strip(pivots, rows, multipliers_, &at(first_, i), lda_, 1);
    }
  }

  void turn_into_multipliers(const double* strip, double* multipliers) const {
    for (Index p = 0; p < block_.pivots; ++p) {
      for (Index i = p * strip_rows; i < (p + 1) * strip_rows; ++i) {
        multipliers[i] = -strip[i] * block_.r[p];
      }
    }
  }

  // c of the rows below the panel, found right of it, and their multipliers.
  void solve_below() {
    const Index pivots = block_.pivots;
    for (Index i = after_; i < n_; i += strip_rows) {
      const Index rows = part(i, n_, strip_rows);
      load_strip(pivots, rows, &at(first_, i), lda_, 1, strips_);
      solve_strip<Solve::mirrored>(pivots, mirrored_, Zeros::some, block_.r, strips_, multipliers_);
      store_strip(pivots, rows, strips_, &at(first_, i), lda_, 1);
      store_strip(pivots, rows, multipliers_, &at(i, first_), 1, lda_);
    }
  }

  double* strip_of(Index i, Index top) { return strips_ + (i - top) * panel_pivots; }

  Zeros pack_columns(Index j, Index columns, double* factors) const {
    return j < first_ ? pack_factors(block_.pivots, columns, &at(first_, j), 1, lda_, factors)
                      : pack_factors(block_.pivots, columns, &at(j, first_), lda_, 1, factors);
  }

  // The upper triangle in the rows top .. bottom-1, whose strips are held, and the columns begin .. end-1.
  void update_columns(Index top, Index bottom, Index begin, Index end) {
    alignas(64) double factors[panel_pivots * tile_columns];
    for (Index j = begin; j < end; j += tile_columns) {
      const Index columns = part(j, end, tile_columns);
      const Zeros zeros = pack_columns(j, columns, factors);
      for (Index i = top; i < bottom && i < j + columns; i += strip_rows) {
        const TileShape shape{part(i, bottom, strip_rows), columns, j - i + 1};
        update_tile_of(shape, zeros, block_.pivots, strip_of(i, top), factors, &at(i, j), lda_);
      }
    }
  }

  void update_above() {
    const Index pivots = block_.pivots;
    for (Index top = 0; top < first_; top += block_rows) {
      const Index bottom = top + part(top, first_, block_rows);
      for (Index i = top; i < bottom; i += strip_rows) {
        const Index rows = part(i, bottom, strip_rows);
        double* const strip = strip_of(i, top);
        load_strip(pivots, rows, &at(i, first_), 1, lda_, strip);
        turn_into_multipliers(strip, multipliers_);
        store_strip(pivots, rows, multipliers_, &at(i, first_), 1, lda_);
        finish_column_strip(block_, strip, rows, &at(i, first_), lda_);
      }
      update_columns(top, bottom, top, first_);
      update_columns(top, bottom, after_, n_);
    }
  }

  void update_below() {
    for (Index top = after_; top < n_; top += block_rows) {
      const Index bottom = top + part(top, n_, block_rows);
      for (Index i = top; i < bottom; i += strip_rows) {
        load_strip(block_.pivots, part(i, bottom, strip_rows), &at(first_, i), lda_, 1, strip_of(i, top));
      }
      update_columns(top, bottom, top, n_);
    }
  }

  // The panel's rows right of it.
  void finish_rows() const {
    double ones[panel_pivots];
    for (double& one : ones) {
      one = 1;
    }
    alignas(64) double factors[panel_pivots * tile_columns];
    for (Index j = after_; j < n_; j += tile_columns) {
      const Index columns = part(j, n_, tile_columns);
      const Zeros zeros = pack_columns(j, columns, factors);
      finish_row_tile(block_, ones, zeros, factors, columns, &at(first_, j), lda_);
    }
  }

  void store_block() {
    for (Index j = 0; j < block_.pivots; ++j) {
      std::memcpy(&at(first_, first_ + j), block_.a[j], static_cast<std::size_t>(j + 1) * sizeof *a_);
      for (Index p = j + 1; p < block_.pivots; ++p) {
        at(first_ + p, first_ + j) = block_.multiplier(p, j);
      }
    }
  }

  void copy_to_lower() const {
    constexpr Index square = 16;
    for (Index j = 0; j < n_; j += square) {
      for (Index i = 0; i <= j; i += square) {
        for (Index c = j; c < j + part(j, n_, square); ++c) {
          for (Index r = i; r < c && r < i + square; ++r) {
            at(c, r) = at(r, c);
          }
        }
      }
    }
  }

  Index n_;
  Index lda_;
  Index first_ = 0;  // of the panel's rows and columns
  Index after_ = 0;
  double* a_;
  bool tested_;
  PanelBlock block_;
  // c(i,p), i > p, of the panel's own rows as factors
  alignas(64) double mirrored_[panel_groups][panel_pivots][tile_columns];
  alignas(64) double multipliers_[strip_size];
  alignas(64) double strips_[block_strips * strip_size];
};

bool invert_symmetric(std::int64_t n, std::int64_t lda, double* a, bool tested) {
  return SymmetricInversion(n, lda, a, tested).invert();
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
