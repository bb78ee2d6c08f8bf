// SPDX-License-Identifier: MIT
// Several neighbouring rows of the bordering Cholesky factorization at once, one row a vector lane. eaxfch2.cpp states
// the order of the operations, which no lane departs from.
//
// The rows are copied into a strip: column k of the strip holds the elements k of all its rows. They go back to the
// triangle when they are done, so that the rows after a refused one are left as they were.
#pragma once

#include <cstdint>

#include "algorithms/eaxfch2_row_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// Rows base .. base+Rows-1, counted from 0, of which `begin` .. `end`-1 are to be factored; those before `begin` hold
// L.
template <int Rows>
class RowStrip {
 public:
  RowStrip(double* a, std::int64_t base, std::int64_t begin, std::int64_t end, double* x)
      : a_(a), x_(x), base_(base), begin_(begin), end_(end) {}

  // Returns the number of the refused row, counted from 1, or 0.
  std::int64_t factor(double tol, double* refused) {
    load();
    for (std::int64_t j = 0; j < base_;) {
      const std::int64_t whole = whole_eights(j);
      // A group that begins at a multiple of eight shares all its terms with the next group.
      if (whole == j && j > 0 && j + 2 * group_columns <= base_) {
        columns_above<2>(j, whole);
        j += 2 * group_columns;
      } else {
        columns_above<1>(j, whole);
        j += group_columns;
      }
    }
    return own_triangle(tol, refused);
  }

 private:
  using Tag = hn::CappedTag<double, Rows>;
  using Vec = hn::Vec<Tag>;
  static constexpr std::int64_t lanes = hn::MaxLanes(Tag());
  static constexpr int parts = static_cast<int>(Rows / lanes);
  // One pass over the rows above: with 32 registers both partial sums of eight columns, with 16 registers one partial
  // sum of four columns for two vectors of rows.
  static constexpr bool both_sums_at_once = hn::MaxLanes(hn::ScalableTag<double>()) == 8;
  static constexpr int pass_columns = both_sums_at_once ? 8 : 4;
  static constexpr int pass_parts = parts >= 2 ? 2 : 1;

  double* strip(std::int64_t k, int part) const { return x_ + k * Rows + part * lanes; }
  HWY_INLINE Vec element(std::int64_t k, int part) const { return hn::Load(Tag(), strip(k, part)); }

  void load() {
    const std::int64_t rows = end_ - base_;
    const double* from[Rows];
    for (std::int64_t r = 0; r < rows; ++r) {
      from[r] = packed_row(a_, base_ + r + 1);
    }
    for (std::int64_t k = 0; k < base_; ++k) {
      for (std::int64_t r = 0; r < rows; ++r) {
        x_[k * Rows + r] = from[r][k];
      }
      for (std::int64_t r = rows; r < Rows; ++r) {
        x_[k * Rows + r] = 0;
      }
    }
    for (std::int64_t k = base_; k < base_ + Rows; ++k) {
      for (std::int64_t r = 0; r < Rows; ++r) {
        x_[k * Rows + r] = r < rows && k <= base_ + r ? from[r][k] : 0;
      }
    }
  }

  // Rows begin .. end-1 back to the triangle, the last one without its diagonal when it was refused.
  void store(std::int64_t end, bool with_last_diagonal) const {
    for (std::int64_t i = begin_; i < end; ++i) {
      double* const to = packed_row(a_, i + 1);
      const std::int64_t count = i + 1 == end && !with_last_diagonal ? i : i + 1;
      for (std::int64_t k = 0; k < count; ++k) {
        to[k] = x_[k * Rows + (i - base_)];
      }
    }
  }

  // t[v][c] := t[v][c] + Σ x(k)·row[c](k), k = begin, begin+2, .. < end, for the parts from `part` on; row elements
  // stand `Step` apart.
  template <int Columns, int Step, int Parts>
  HWY_INLINE void add_every_other(std::int64_t begin, std::int64_t end, int part, const double* const* row,
                                  Vec (*t)[Columns]) const {
    const Tag d;
    for (std::int64_t k = begin; k < end; k += 2) {
      Vec x[Parts];
#pragma GCC unroll 2
      for (int v = 0; v < Parts; ++v) {
        x[v] = element(k, part + v);
      }
#pragma GCC unroll 8
      for (int c = 0; c < Columns; ++c) {
        const Vec l = hn::Set(d, row[c][k * Step]);
#pragma GCC unroll 2
        for (int v = 0; v < Parts; ++v) {
          t[v][c] = hn::Add(t[v][c], hn::Mul(x[v], l));
        }
      }
    }
  }

  // t[v][c] := t[v][c] + Σ x(k)·row[c](k), k < whole, in two partial sums.
  template <int Columns, int Step, int Parts>
  HWY_INLINE void add_whole_eights(std::int64_t whole, int part, const double* const* row, Vec (*t)[Columns]) const {
    if (whole == 0) {
      return;  // a short sum has no second part, and adding its zero would turn -0 into +0
    }
    const Tag d;
    Vec second[Parts][Columns];
#pragma GCC unroll 2
    for (int v = 0; v < Parts; ++v) {
#pragma GCC unroll 8
      for (int c = 0; c < Columns; ++c) {
        second[v][c] = hn::Zero(d);
      }
    }
    if constexpr (both_sums_at_once) {
      for (std::int64_t k = 0; k < whole; k += 2) {
        add_every_other<Columns, Step, Parts>(k, k + 1, part, row, t);
        add_every_other<Columns, Step, Parts>(k + 1, k + 2, part, row, second);
      }
    } else {
      add_every_other<Columns, Step, Parts>(0, whole, part, row, t);
      add_every_other<Columns, Step, Parts>(1, whole, part, row, second);
    }
#pragma GCC unroll 2
    for (int v = 0; v < Parts; ++v) {
#pragma GCC unroll 8
      for (int c = 0; c < Columns; ++c) {
        t[v][c] = hn::Add(t[v][c], second[v][c]);
      }
    }
  }

  // One element of every row: the terms from..j-1, then the quotient.
  template <int Step>
  HWY_INLINE void finish(std::int64_t j, std::int64_t from, int part, const double* row, double diagonal, Vec t,
                         std::int64_t keep) const {
    const Tag d;
    for (std::int64_t k = from; k < j; ++k) {
      t = hn::Add(t, hn::Mul(element(k, part), hn::Set(d, row[k * Step])));
    }
    t = hn::Div(t, hn::Set(d, -diagonal));
    const std::int64_t kept = keep - part * lanes;
    if (kept > 0) {
      t = hn::IfThenElse(hn::FirstN(d, static_cast<std::size_t>(kept)), element(j, part), t);
    }
    hn::Store(t, d, strip(j, part));
  }

  // Columns of `Groups` neighbouring groups, of which the whole eights of the first one's sums are all that is added
  // at once; what a later group has before it beyond those follows in `finish`, as leftovers.
  template <int Groups>
  void columns_above(std::int64_t j0, std::int64_t whole) {
    constexpr int columns = Groups * group_columns;
    constexpr int at_once = columns < pass_columns ? columns : pass_columns;
    const double* row[columns];
    for (std::int64_t c = 0; c < columns; ++c) {
      row[c] = packed_row(a_, j0 + c + 1);
    }
    for (int part = 0; part < parts; part += pass_parts) {
      for (std::int64_t first = 0; first < columns; first += at_once) {
        Vec t[pass_parts][at_once];
#pragma GCC unroll 2
        for (int v = 0; v < pass_parts; ++v) {
#pragma GCC unroll 8
          for (int c = 0; c < at_once; ++c) {
            t[v][c] = hn::Neg(element(j0 + first + c, part + v));
          }
        }
        add_whole_eights<at_once, 1, pass_parts>(whole, part, row + first, t);
#pragma GCC unroll 8
        for (int c = 0; c < at_once; ++c) {
          const std::int64_t j = j0 + first + c;
#pragma GCC unroll 2
          for (int v = 0; v < pass_parts; ++v) {
            finish<1>(j, whole, part + v, row[first + c], row[first + c][j], t[v][c], begin_ - base_);
          }
        }
      }
    }
  }

  // The columns that are rows of the strip itself, and its pivots.
  std::int64_t own_triangle(double tol, double* refused) {
    const Tag d;
    const std::int64_t whole_before_base = base_ - base_ % sum_step;
    alignas(64) double squares[Rows];
    for (int part = 0; part < parts; ++part) {
      Vec first = hn::Zero(d);
      Vec second = hn::Zero(d);
      for (std::int64_t k = 0; k < whole_before_base; k += 2) {
        first = hn::Add(first, hn::Mul(element(k, part), element(k, part)));
        second = hn::Add(second, hn::Mul(element(k + 1, part), element(k + 1, part)));
      }
      hn::Store(hn::Add(first, second), d, squares + part * lanes);
    }
    for (std::int64_t j0 = base_; j0 < end_; j0 += group_columns) {
      const std::int64_t columns = end_ - j0 < group_columns ? end_ - j0 : group_columns;
      const double* row[group_columns];
      for (std::int64_t c = 0; c < group_columns; ++c) {
        row[c] = x_ + (j0 + (c < columns ? c : 0) - base_);
      }
      const std::int64_t whole = whole_eights(j0);
      Vec t[parts][group_columns];
      for (int part = 0; part < parts; part += pass_parts) {
        for (int v = part; v < part + pass_parts; ++v) {
          for (std::int64_t c = 0; c < group_columns; ++c) {
            t[v][c] = c < columns ? hn::Neg(element(j0 + c, v)) : hn::Zero(d);
          }
        }
        add_whole_eights<group_columns, Rows, pass_parts>(whole, part, row, t + part);
      }
      for (std::int64_t c = 0; c < columns; ++c) {
        const std::int64_t j = j0 + c;
        double& diagonal = x_[j * Rows + (j - base_)];
        if (j >= begin_) {
          const double pivot = diagonal - sum_of_squares(j, squares[j - base_]);
          if (tol >= pivot) {
            *refused = pivot;
            store(j + 1, false);
            return j + 1;
          }
          diagonal = __builtin_sqrt(pivot);
        }
        const std::int64_t keep = (j >= begin_ ? j + 1 : begin_) - base_;
        for (int part = 0; part < parts; ++part) {
          finish<Rows>(j, whole, part, row[c], diagonal, t[part][c], keep);
        }
      }
    }
    store(end_, true);
    return 0;
  }

  // `sum` is that of the whole eights before the strip.
  double sum_of_squares(std::int64_t i, double sum) const {
    std::int64_t k = base_ - base_ % sum_step;
    if (i < plain_length) {
      sum = 0;
      k = 0;
    }
    for (; k < i; ++k) {
      const double l = x_[k * Rows + (i - base_)];
      sum = sum + l * l;
    }
    return sum;
  }

  double* a_;
  double* x_;
  std::int64_t base_;
  std::int64_t begin_;
  std::int64_t end_;
};

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
