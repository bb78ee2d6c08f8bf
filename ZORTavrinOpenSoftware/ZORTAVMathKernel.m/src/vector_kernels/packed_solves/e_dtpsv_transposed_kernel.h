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

// Sums that run side by side; fewer would wait for the additions' latency.
constexpr std::size_t columns_per_sum = 16;

// Squares wider than four take more shuffles an element than they save.
using SquareTag = hn::CappedTag<double, 4>;
using SquareRow = hn::Vec<SquareTag>;
constexpr std::size_t square = hn::MaxLanes(SquareTag());
constexpr std::size_t squares_per_sum = columns_per_sum / square;

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

struct Ascending {
  static constexpr std::size_t row(std::size_t k) { return k; }
};
struct Descending {
  static constexpr std::size_t row(std::size_t k) { return square - 1 - k; }
};

// sum(c) := sum(c) - column[c](i)·x(i) for `square` rows from i0 on.
template <class Order>
HWY_INLINE void subtract_squares(const double* const* column, std::size_t i0, const double* x,
                                 SquareRow (&sum)[squares_per_sum]) {
  const SquareTag d;
  SquareRow xi[square];
  for (std::size_t k = 0; k < square; ++k) {
    xi[k] = hn::Set(d, x[i0 + k]);
  }
  for (std::size_t s = 0; s < squares_per_sum; ++s) {
    SquareRow row[square];
    for (std::size_t k = 0; k < square; ++k) {
      row[k] = hn::LoadU(d, column[s * square + k] + i0);
    }
    transpose(row);
    for (std::size_t k = 0; k < square; ++k) {
      sum[s] = hn::Sub(sum[s], hn::Mul(row[Order::row(k)], xi[Order::row(k)]));
    }
  }
}

// t := x - the sums of the columns over the rows that pass(sum) walks.
template <class Pass>
HWY_INLINE void subtract_sums(const double* x, double* t, const Pass& pass) {
  const SquareTag d;
  SquareRow sum[squares_per_sum];
  for (std::size_t s = 0; s < squares_per_sum; ++s) {
    sum[s] = hn::LoadU(d, x + s * square);
  }
  pass(sum);
  for (std::size_t s = 0; s < squares_per_sum; ++s) {
    hn::StoreU(sum[s], d, t + s * square);
  }
}

// x(j) := sum, but for the division by the diagonal, whose place need not even exist where it is one.
HWY_INLINE double solved(double sum, const double* diagonal_element, Diagonal diagonal) {
  return diagonal == Diagonal::given ? sum / *diagonal_element : sum;
}

void solve_upper_transposed(std::size_t n, const double* ap, Diagonal diagonal, double* x) {
  std::size_t begin = n % columns_per_sum;
  for (std::size_t j = 0; j < begin; ++j) {
    const double* const column = upper_column(ap, j);
    double sum = x[j];
    for (std::size_t i = 0; i < j; ++i) {
      sum = sum - column[i] * x[i];
    }
    x[j] = solved(sum, column + j, diagonal);
  }
  for (; begin < n; begin += columns_per_sum) {
    const double* column[columns_per_sum];
    double t[columns_per_sum];
    for (std::size_t c = 0; c < columns_per_sum; ++c) {
      column[c] = upper_column(ap, begin + c);
    }
    const std::size_t whole = begin / square * square;
    subtract_sums(x + begin, t, [&](SquareRow(&sum)[squares_per_sum]) HWY_ATTR {
      for (std::size_t i = 0; i < whole; i += square) {
        subtract_squares<Ascending>(column, i, x, sum);
      }
    });
    for (std::size_t i = whole; i < begin; ++i) {
      for (std::size_t c = 0; c < columns_per_sum; ++c) {
        t[c] = t[c] - column[c][i] * x[i];
      }
    }
    // The triangle on the diagonal, in registers.
#pragma GCC unroll 16
    for (std::size_t c = 0; c < columns_per_sum; ++c) {
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
  std::size_t end = n - n % columns_per_sum;
  for (std::size_t j = n; j-- > end;) {
    const double* const column = lower_column(ap, n, j);
    double sum = x[j];
    for (std::size_t i = n; --i > j;) {
      sum = sum - column[i] * x[i];
    }
    x[j] = solved(sum, column + j, diagonal);
  }
  for (; end > 0; end -= columns_per_sum) {
    const std::size_t begin = end - columns_per_sum;
    const double* column[columns_per_sum];
    double t[columns_per_sum];
    for (std::size_t c = 0; c < columns_per_sum; ++c) {
      column[c] = lower_column(ap, n, begin + c);
    }
    const std::size_t whole = n - (n - end) / square * square;  // the rows from here on are in squares
    subtract_sums(x + begin, t, [&](SquareRow(&sum)[squares_per_sum]) HWY_ATTR {
      for (std::size_t i = n; i > whole; i -= square) {
        subtract_squares<Descending>(column, i - square, x, sum);
      }
    });
    for (std::size_t i = whole; i-- > end;) {
      for (std::size_t c = 0; c < columns_per_sum; ++c) {
        t[c] = t[c] - column[c][i] * x[i];
      }
    }
    // The triangle on the diagonal, in registers.
#pragma GCC unroll 16
    for (std::size_t step = 1; step <= columns_per_sum; ++step) {
      const std::size_t c = columns_per_sum - step;
      const double* const own = column[c] + begin;
#pragma GCC unroll 16
      for (std::size_t k = columns_per_sum - 1; k > c; --k) {
        t[c] = t[c] - own[k] * t[k];
      }
      t[c] = solved(t[c], own + c, diagonal);
      x[begin + c] = t[c];
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
