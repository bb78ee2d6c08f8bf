// SPDX-License-Identifier: MIT
// Several neighbouring rows of the bordering Cholesky factorization at once, one row a vector lane. eaxfch2.cpp states
// the order of the operations, which no lane departs from.
//
// The rows are copied into a strip: column k of the strip holds the elements k of all its rows. They go back to the
// triangle when they are done, so that the rows after a refused one are left as they were.
#pragma once

#include <cstdint>

#include "algorithms/eaxfch2_row_kernel.h"
#include "algorithms/eaxfch2_square_kernel.h"
#include "algorithms/eaxfch2_sums_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

template <int Rows>
class RowStrip {
 public:
  // Rows base .. base+Rows-1, counted from 0, base a multiple of Rows, of which `begin` .. `end`-1 are to be factored;
  // those before `begin` hold L. The strip takes Rows * (base + Rows) elements at x.
  void load(double* a, std::int64_t base, std::int64_t begin, std::int64_t end, double* x) {
    x_ = x;
    base_ = base;
    begin_ = begin > base ? begin : base;
    end_ = end < base + Rows ? end : base + Rows;
    for (std::int64_t r = 0; r < Rows; ++r) {
      row_[r] = packed_row(a, base_ + r + 1);
    }
    if (all_rows()) {
      for (std::int64_t k = 0; k < base_; k += square) {
        for (std::int64_t r = 0; r < Rows; r += square) {
          const double* from[square];
          double* to[square];
          for (std::int64_t q = 0; q < square; ++q) {
            from[q] = row_[r + q] + k;
            to[q] = x_ + (k + q) * Rows + r;
          }
          transpose_square(from, to);
        }
      }
    } else {
      for (std::int64_t k = 0; k < base_; ++k) {
        for (std::int64_t r = 0; r < Rows; ++r) {
          x_[k * Rows + r] = base_ + r >= begin_ && base_ + r < end_ ? row_[r][k] : 0;
        }
      }
    }
    // The negated element on the diagonal is where the row's sum of squares begins.
    for (std::int64_t c = 0; c < Rows; ++c) {
      for (std::int64_t r = 0; r < Rows; ++r) {
        x_[(base_ + c) * Rows + r] = c < r && base_ + r < end_ ? row_[r][base_ + c] : -0.0;
      }
      diagonal_[c] = base_ + c < end_ ? row_[c][base_ + c] : 0;
    }
  }

  std::int64_t base() const { return base_; }

  // Columns j0 .. j0+Columns-1. They may be left waiting for the next call of any strip, or for finish().
  template <int Columns>
  void columns(const RowOctet& above, std::int64_t j0, Quotients<Rows>& waiting) {
    Sums::template ordered<Columns, 1>(j0, x_, above.row, waiting.sums, waiting);
    divide_or_wait<Columns>(above, j0, waiting);
  }

  // The same in pieces.
  void begin_octet(std::int64_t j0) { Sums::begin(j0, x_, sums_); }
  void add_piece(const RowOctet& above, std::int64_t from, std::int64_t to, Quotients<Rows>& waiting) {
    Sums::add_piece(from, to, x_, above.row, sums_, waiting);
  }
  void end_octet(const RowOctet& above, std::int64_t j0, Quotients<Rows>& waiting) {
    Sums::end(sums_, waiting.sums);
    divide_or_wait<octet>(above, j0, waiting);
  }

  // The columns that are rows of the strip itself, and its pivots. Returns the number of the refused row, counted from
  // 1, or 0.
  std::int64_t own_triangle(double tol, double* refused, Quotients<Rows>& waiting) {
    if (begin_ > base_) {
      Sums::finish(waiting);
      restore_kept();
    }
    const double* row[Rows];
    for (std::int64_t c = 0; c < Rows; ++c) {
      row[c] = x_ + c;
    }
    alignas(64) double t[Rows * Rows];
    Sums::template ordered<Rows, Rows>(base_, x_, row, t, waiting);
    if (base_ == sum_step) {
      for (std::int64_t c = 1; c < group_columns; ++c) {
        t[c * Rows + c] = squares_in_two_sums(c);
      }
    }
    return eliminate(t, tol, refused);
  }

 private:
  using Sums = StripSums<Rows>;
  using Tag = typename Sums::Tag;
  using Vec = typename Sums::Vec;
  static constexpr int lanes = Sums::lanes;
  static constexpr int parts = Sums::parts;

  template <int Columns>
  HWY_INLINE void divide_or_wait(const RowOctet& above, std::int64_t j0, Quotients<Rows>& waiting) {
    if (Columns == octet && Sums::must_wait(j0)) {
      waiting.x = x_ + j0 * Rows;
      waiting.corner = above.corner;
    } else {
      Sums::template divide<Columns>(x_ + j0 * Rows, above.corner, waiting.sums);
    }
  }

  bool all_rows() const { return end_ - begin_ == Rows; }

  // The rows that hold L take no part in the columns above, but they are factors among the strip's own.
  void restore_kept() {
    for (std::int64_t r = 0; r < begin_ - base_; ++r) {
      for (std::int64_t k = 0; k < base_; ++k) {
        x_[k * Rows + r] = row_[r][k];
      }
    }
  }

  // Of row base+c the squares before the strip, when they are eight but the row has more terms.
  double squares_in_two_sums(std::int64_t c) const {
    double sum[2] = {0, 0};
    for (std::int64_t k = 0; k < sum_step; ++k) {
      const double l = x_[k * Rows + c];
      sum[k % 2] = sum[k % 2] + l * l;
    }
    return sum[0] + sum[1];
  }

  std::int64_t eliminate(const double* t, double tol, double* refused) {
    const Tag d;
    alignas(64) double squares[Rows];
    Vec v[Rows][parts];
#pragma GCC unroll 8
    for (int c = 0; c < Rows; ++c) {
#pragma GCC unroll 4
      for (int part = 0; part < parts; ++part) {
        v[c][part] = hn::Load(d, t + c * Rows + part * lanes);
      }
    }
#pragma GCC unroll 8
    for (int c = 0; c < Rows; ++c) {
      const std::int64_t j = base_ + c;
      if (j >= end_) {
        break;
      }
      double* const column = x_ + j * Rows;
      if (j >= begin_) {
        hn::Store(v[c][c / lanes], d, squares + c / lanes * lanes);
        const double pivot = diagonal_[c] - squares[c];
        if (tol >= pivot) {
          *refused = pivot;
          store(j + 1, false);
          return j + 1;
        }
        diagonal_[c] = __builtin_sqrt(pivot);
      }
      const std::int64_t keep = (j >= begin_ ? j + 1 : begin_) - base_;
#pragma GCC unroll 4
      for (int part = 0; part < parts; ++part) {
        v[c][part] = hn::Div(v[c][part], hn::Set(d, -diagonal_[c]));
        const std::int64_t kept = keep - part * lanes;
        if (kept > 0) {
          v[c][part] = hn::IfThenElse(hn::FirstN(d, static_cast<std::size_t>(kept)), hn::Load(d, column + part * lanes),
                                      v[c][part]);
        }
        hn::Store(v[c][part], d, column + part * lanes);
      }
#pragma GCC unroll 8
      for (int q = c + 1; q < Rows; ++q) {
        const Vec factor = hn::Set(d, column[q]);
#pragma GCC unroll 4
        for (int part = 0; part < parts; ++part) {
          v[q][part] = hn::Add(v[q][part], hn::Mul(v[c][part], factor));
        }
      }
    }
    store(end_, true);
    return 0;
  }

  // Rows begin .. end-1 back to the triangle, the last one without its diagonal when it was refused.
  void store(std::int64_t end, bool with_last_diagonal) const {
    std::int64_t stored = 0;
    if (all_rows() && end == end_) {
      for (; stored < base_; stored += square) {
        for (std::int64_t r = 0; r < Rows; r += square) {
          const double* from[square];
          double* to[square];
          for (std::int64_t q = 0; q < square; ++q) {
            from[q] = x_ + (stored + q) * Rows + r;
            to[q] = row_[r + q] + stored;
          }
          transpose_square(from, to);
        }
      }
    }
    for (std::int64_t i = begin_; i < end; ++i) {
      const std::int64_t r = i - base_;
      for (std::int64_t k = stored; k < i; ++k) {
        row_[r][k] = x_[k * Rows + r];
      }
      if (i + 1 < end || with_last_diagonal) {
        row_[r][i] = diagonal_[r];
      }
    }
  }

  double* row_[Rows];
  double* x_;
  std::int64_t base_;
  std::int64_t begin_;
  std::int64_t end_;
  double diagonal_[Rows];
  PartialSums<Rows> sums_;
};

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
