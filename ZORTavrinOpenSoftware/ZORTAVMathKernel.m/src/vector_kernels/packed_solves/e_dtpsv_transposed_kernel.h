// SPDX-License-Identifier: MIT
// x := T⁻ᵀ·x at unit increment. Each element is a sum along its column, one term after the other, so a single column
// waits for its own additions: a group of columns is summed at once, a column a vector lane. Squares of the triangle
// are transposed in registers for that. The columns that do not fill a group are the short ones.
// Included by packed_solve_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "dispatch/kernel_unit.h"
#include "vector_kernels/packed_solves/packed_solve_kernel_table.h"
#include "vector_kernels/packed_solves/packed_triangle.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// The triangle on the diagonal is solved for this many columns at a time.
constexpr std::size_t columns_per_group = 16;

// Squares wider than four take more shuffles an element than they save.
using SquareTag = hn::CappedTag<double, 4>;
using SquareRow = hn::Vec<SquareTag>;
constexpr std::size_t square = hn::MaxLanes(SquareTag());

// Columns whose sums run side by side: fewer would wait for their additions, the pointers of more would not stay in
// registers.
constexpr std::size_t columns_abreast = 8;
constexpr std::size_t squares_abreast = columns_abreast / square;

HWY_INLINE void transpose(SquareRow (&row)[square]) {
  const SquareTag d;
  if constexpr (square == 2) {
    const SquareRow first = hn::InterleaveLower(d, row[0], row[1]);
    row[1] = hn::InterleaveUpper(d, row[0], row[1]);
    row[0] = first;
  } else {
    const SquareRow even01 = hn::InterleaveLower(d, row[0], row[1]);
    const SquareRow odd01 = hn::InterleaveUpper(d, row[0], row[1]);
    const SquareRow even23 = hn::InterleaveLower(d, row[2], row[3]);
    const SquareRow odd23 = hn::InterleaveUpper(d, row[2], row[3]);
    row[0] = hn::ConcatLowerLower(d, even23, even01);
    row[1] = hn::ConcatLowerLower(d, odd23, odd01);
    row[2] = hn::ConcatUpperUpper(d, even23, even01);
    row[3] = hn::ConcatUpperUpper(d, odd23, odd01);
  }
}

// In which direction the rows of a triangle are walked.
struct Upper {
  static constexpr std::size_t onward = square;
  static constexpr std::size_t row(std::size_t k) { return k; }
};
struct Lower {
  static constexpr std::size_t onward = 0 - square;
  static constexpr std::size_t row(std::size_t k) { return square - 1 - k; }
};

// t(c) := t(c) - the sum of column(c)(i)·x(i) over the rows of as many squares, of which the first to be taken
// starts at row i. The elements are multiplied as they lie and their products transposed, so that one load of x serves
// all columns; then the squares take turns, as each waits for its own last subtraction. A function of its own, so that
// all of it stays in registers.
template <class Triangle>
HWY_NOINLINE void subtract_abreast(const double* const* column, std::size_t i, std::size_t squares, const double* x,
                                   double* t) {
  const SquareTag d;
  SquareRow sum[squares_abreast];
#pragma GCC unroll 8
  for (std::size_t s = 0; s < squares_abreast; ++s) {
    sum[s] = hn::LoadU(d, t + s * square);
  }
#pragma GCC unroll 1
  for (; squares > 0; --squares) {
    const SquareRow xi = hn::LoadU(d, x + i);
    SquareRow product[squares_abreast][square];
#pragma GCC unroll 8
    for (std::size_t s = 0; s < squares_abreast; ++s) {
#pragma GCC unroll 4
      for (std::size_t k = 0; k < square; ++k) {
        product[s][k] = hn::Mul(hn::LoadU(d, column[s * square + k] + i), xi);
      }
      transpose(product[s]);
    }
#pragma GCC unroll 4
    for (std::size_t k = 0; k < square; ++k) {
#pragma GCC unroll 8
      for (std::size_t s = 0; s < squares_abreast; ++s) {
        sum[s] = hn::Sub(sum[s], product[s][Triangle::row(k)]);
      }
    }
    i += Triangle::onward;
  }
#pragma GCC unroll 8
  for (std::size_t s = 0; s < squares_abreast; ++s) {
    hn::StoreU(sum[s], d, t + s * square);
  }
}

// The same for all columns of a group.
template <class Triangle>
HWY_INLINE void subtract_squares(const double* const* column, std::size_t i, std::size_t squares, const double* x,
                                 double* t) {
  for (std::size_t c = 0; c < columns_per_group; c += columns_abreast) {
    subtract_abreast<Triangle>(column + c, i, squares, x, t + c);
  }
}

// x(j) := sum, but for the division by the diagonal, whose place need not even exist where it is one.
HWY_INLINE double solved(double sum, const double* diagonal_element, Diagonal diagonal) {
  return diagonal == Diagonal::given ? sum / *diagonal_element : sum;
}

void solve_upper_transposed(std::size_t n, const double* ap, Diagonal diagonal, double* x) {
  std::size_t begin = n % columns_per_group;
  for (std::size_t j = 0; j < begin; ++j) {
    const double* const column = upper_column(ap, j);
    double sum = x[j];
    for (std::size_t i = 0; i < j; ++i) {
      sum = sum - column[i] * x[i];
    }
    x[j] = solved(sum, column + j, diagonal);
  }
  for (; begin < n; begin += columns_per_group) {
    const double* column[columns_per_group];
    double t[columns_per_group];
    for (std::size_t c = 0; c < columns_per_group; ++c) {
      column[c] = upper_column(ap, begin + c);
      t[c] = x[begin + c];
    }
    const std::size_t whole = begin / square * square;
    subtract_squares<Upper>(column, 0, whole / square, x, t);
    for (std::size_t i = whole; i < begin; ++i) {
      for (std::size_t c = 0; c < columns_per_group; ++c) {
        t[c] = t[c] - column[c][i] * x[i];
      }
    }
    // The triangle on the diagonal, in registers.
#pragma GCC unroll 16
    for (std::size_t c = 0; c < columns_per_group; ++c) {
      const double* const own = column[c] + begin;
#pragma GCC unroll 16
      for (std::size_t k = 0; k < c; ++k) {
        t[c] = t[c] - own[k] * t[k];
      }
      t[c] = solved(t[c], own + c, diagonal);
      x[begin + c] = t[c];
    }
  }
}

void solve_lower_transposed(std::size_t n, const double* ap, Diagonal diagonal, double* x) {
  std::size_t end = n - n % columns_per_group;
  for (std::size_t j = n; j-- > end;) {
    const double* const column = lower_column(ap, n, j);
    double sum = x[j];
    for (std::size_t i = n; --i > j;) {
      sum = sum - column[i] * x[i];
    }
    x[j] = solved(sum, column + j, diagonal);
  }
  for (; end > 0; end -= columns_per_group) {
    const std::size_t begin = end - columns_per_group;
    const double* column[columns_per_group];
    double t[columns_per_group];
    for (std::size_t c = 0; c < columns_per_group; ++c) {
      column[c] = lower_column(ap, n, begin + c);
      t[c] = x[begin + c];
    }
    const std::size_t whole = n - (n - end) / square * square;  // the rows from here on are in squares
    subtract_squares<Lower>(column, n - square, (n - whole) / square, x, t);
    for (std::size_t i = whole; i-- > end;) {
      for (std::size_t c = 0; c < columns_per_group; ++c) {
        t[c] = t[c] - column[c][i] * x[i];
      }
    }
    // The triangle on the diagonal, in registers.
#pragma GCC unroll 16
    for (std::size_t step = 1; step <= columns_per_group; ++step) {
      const std::size_t c = columns_per_group - step;
      const double* const own = column[c] + begin;
#pragma GCC unroll 16
      for (std::size_t k = columns_per_group - 1; k > c; --k) {
        t[c] = t[c] - own[k] * t[k];
      }
      t[c] = solved(t[c], own + c, diagonal);
      x[begin + c] = t[c];
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
