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
    std::int64_t j = 0;
    for (; j < base_; j += group_columns) {
      const double* row[2 * group_columns];
      // From the second eight on, two groups share all whole eights of their sums.
      const bool pair = j % sum_step == 0 && j > sum_step && j + 2 * group_columns <= base_;
      for (std::int64_t c = 0; c < (pair ? 2 * group_columns : group_columns); ++c) {
        row[c] = packed_row(a_, j + c + 1);
      }
      if (pair) {
        pair_of_groups(j, row);
        j += group_columns;
      } else {
        group_of_rows_above(j, row);
      }
    }
    return own_triangle(tol, refused);
  }

 private:
  using Tag = hn::CappedTag<double, Rows>;
  using Vec = hn::Vec<Tag>;
  static constexpr std::int64_t lanes = hn::MaxLanes(Tag());
  static constexpr int parts = static_cast<int>(Rows / lanes);
  // Accumulators of one pass: two for each column.
  static constexpr int pass_columns = lanes == 8 ? 8 : 4;

  double* strip(std::int64_t k, int part) const { return x_ + k * Rows + part * lanes; }
  Vec element(std::int64_t k, int part) const { return hn::Load(Tag(), strip(k, part)); }

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

  // t[c] := t[c] + Σ x(k)·row[c](k), k < whole, in two partial sums; row elements stand `Step` apart.
  template <int Columns, int Step>
  HWY_INLINE void add_whole_eights(std::int64_t whole, int part, const double* const* row, Vec* t) const {
    const Tag d;
    Vec first[Columns];
    Vec second[Columns];
    for (int c = 0; c < Columns; ++c) {
      first[c] = t[c];
      second[c] = hn::Zero(d);
    }
    const double* x = strip(0, part);
    for (std::int64_t k = 0; k < whole; k += 2, x += 2 * Rows) {
      const Vec x1 = hn::Load(d, x);
      const Vec x2 = hn::Load(d, x + Rows);
      for (int c = 0; c < Columns; ++c) {
        first[c] = hn::Add(first[c], hn::Mul(x1, hn::Set(d, row[c][k * Step])));
      }
      for (int c = 0; c < Columns; ++c) {
        second[c] = hn::Add(second[c], hn::Mul(x2, hn::Set(d, row[c][(k + 1) * Step])));
      }
    }
    for (int c = 0; c < Columns; ++c) {
      t[c] = hn::Add(first[c], second[c]);
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

  void group_of_rows_above(std::int64_t j0, const double* const* row) {
    for (int part = 0; part < parts; ++part) {
      Vec t[group_columns];
      for (std::int64_t c = 0; c < group_columns; ++c) {
        t[c] = hn::Neg(element(j0 + c, part));
      }
      const std::int64_t whole = j0 < plain_length ? 0 : j0 - j0 % sum_step;
      if (whole > 0) {
        add_whole_eights<group_columns, 1>(whole, part, row, t);
      }
      for (std::int64_t c = 0; c < group_columns; ++c) {
        finish<1>(j0 + c, whole, part, row[c], row[c][j0 + c], t[c], begin_ - base_);
      }
    }
  }

  // Two groups whose first column is a multiple of eight: all terms before it are whole eights of both.
  void pair_of_groups(std::int64_t j0, const double* const* row) {
    for (int part = 0; part < parts; ++part) {
      Vec t[2 * group_columns];
      for (std::int64_t c = 0; c < 2 * group_columns; ++c) {
        t[c] = hn::Neg(element(j0 + c, part));
      }
      for (std::int64_t c = 0; c < 2 * group_columns; c += pass_columns) {
        add_whole_eights<pass_columns, 1>(j0, part, row + c, t + c);
      }
      for (std::int64_t c = 0; c < 2 * group_columns; ++c) {
        finish<1>(j0 + c, j0, part, row[c], row[c][j0 + c], t[c], begin_ - base_);
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
      const std::int64_t whole = j0 < plain_length ? 0 : j0 - j0 % sum_step;
      Vec t[parts][group_columns];
      for (int part = 0; part < parts; ++part) {
        for (std::int64_t c = 0; c < columns; ++c) {
          t[part][c] = hn::Neg(element(j0 + c, part));
        }
        for (std::int64_t c = columns; c < group_columns; ++c) {
          t[part][c] = hn::Zero(d);
        }
        if (whole > 0) {
          add_whole_eights<group_columns, Rows>(whole, part, row, t[part]);
        }
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
