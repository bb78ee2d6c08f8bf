// SPDX-License-Identifier: MIT
// x := T⁻¹·x at unit increment, column by column. Every element takes its updates in the order of the columns, so the
// columns may be taken several at a time: first the small triangle on the diagonal, then one pass over the rows
// outside it, in which an element stays in a register for all columns of the group.
// Included by packed_solve_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "dispatch/kernel_unit.h"
#include "vector_kernels/packed_solves/packed_solve_kernel_table.h"
#include "vector_kernels/packed_solves/packed_triangle.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

using SolveTag = hn::ScalableTag<double>;
constexpr std::size_t solve_lanes = hn::MaxLanes(SolveTag());

// Columns whose updates are applied in one pass.
constexpr std::size_t columns_per_pass = 8;

// The columns to be subtracted, in this order, each times its element of the solution.
struct ColumnUpdates {
  const double* column[columns_per_pass];  // element i of a column belongs to row i
  double factor[columns_per_pass];
  std::size_t count = 0;

  void add(const double* c, double x) {
    column[count] = c;
    factor[count] = x;
    ++count;
  }
};

// piece(d, i) for the fewer than 2·limit rows from `begin` to `end`, by powers of two.
template <std::size_t limit, class Piece>
HWY_INLINE void short_pieces(std::size_t begin, std::size_t end, const Piece& piece) {
  if (end - begin >= limit) {
    piece(hn::CappedTag<double, limit>(), begin);
    begin += limit;
  }
  if constexpr (limit > 1) {
    short_pieces<limit / 2>(begin, end, piece);
  }
}

// The order of the rows is free. Each direction begins with the rows that the next small triangle is waiting for.
struct FromFirstRow {
  template <class Piece>
  static HWY_INLINE void each(std::size_t begin, std::size_t end, const Piece& piece) {
    for (; begin + solve_lanes <= end; begin += solve_lanes) {
      piece(SolveTag(), begin);
    }
    short_pieces<solve_lanes / 2>(begin, end, piece);
  }
};
struct FromLastRow {
  template <class Piece>
  static HWY_INLINE void each(std::size_t begin, std::size_t end, const Piece& piece) {
    for (; begin + solve_lanes <= end; end -= solve_lanes) {
      piece(SolveTag(), end - solve_lanes);
    }
    short_pieces<solve_lanes / 2>(begin, end, piece);
  }
};

// x(i) := x(i) - factor·column(i), one of Count columns after the other.
template <std::size_t Count, class Rows>
HWY_INLINE void subtract_together(std::size_t begin, std::size_t end, const double* const* column, const double* factor,
                                  double* x) {
  const double* c[Count];
  for (std::size_t k = 0; k < Count; ++k) {
    c[k] = column[k];
  }
  Rows::each(begin, end, [&](auto d, std::size_t i) HWY_ATTR {
    auto xi = hn::LoadU(d, x + i);
    for (std::size_t k = 0; k < Count; ++k) {
      xi = hn::Sub(xi, hn::Mul(hn::Set(d, factor[k]), hn::LoadU(d, c[k] + i)));
    }
    hn::StoreU(xi, d, x + i);
  });
}

template <class Rows, std::size_t Count>
HWY_INLINE void subtract(std::size_t begin, std::size_t end, const ColumnUpdates& u, double* x, std::size_t done = 0) {
  if (u.count - done >= Count) {
    subtract_together<Count, Rows>(begin, end, u.column + done, u.factor + done, x);
    done += Count;
  }
  if constexpr (Count > 1) {
    subtract<Rows, Count / 2>(begin, end, u, x, done);
  }
}

// Columns begin..begin+Width-1: the triangle on the diagonal, its elements of x in registers, then the other rows.
template <std::size_t Width>
HWY_INLINE void solve_upper_columns(const double* ap, std::size_t begin, Diagonal diagonal, ZeroElement zero,
                                    double* x) {
  double t[Width];
  ColumnUpdates updates;
#pragma GCC unroll 8
  for (std::size_t k = 0; k < Width; ++k) {
    t[k] = x[begin + k];
  }
#pragma GCC unroll 8
  for (std::size_t step = 1; step <= Width; ++step) {
    const std::size_t k = Width - step;
    if (t[k] == 0 && zero == ZeroElement::skipped) {
      continue;
    }
    const double* const column = upper_column(ap, begin + k);
    if (diagonal == Diagonal::given) {
      t[k] = t[k] / column[begin + k];
    }
#pragma GCC unroll 8
    for (std::size_t i = 0; i < k; ++i) {
      t[i] = t[i] - t[k] * column[begin + i];
    }
    updates.add(column, t[k]);
  }
#pragma GCC unroll 8
  for (std::size_t k = 0; k < Width; ++k) {
    x[begin + k] = t[k];
  }
  subtract<FromLastRow, Width>(0, begin, updates, x);
}

template <std::size_t Width>
HWY_INLINE void solve_lower_columns(std::size_t n, const double* ap, std::size_t begin, Diagonal diagonal,
                                    ZeroElement zero, double* x) {
  double t[Width];
  ColumnUpdates updates;
#pragma GCC unroll 8
  for (std::size_t k = 0; k < Width; ++k) {
    t[k] = x[begin + k];
  }
#pragma GCC unroll 8
  for (std::size_t k = 0; k < Width; ++k) {
    if (t[k] == 0 && zero == ZeroElement::skipped) {
      continue;
    }
    const double* const column = lower_column(ap, n, begin + k);
    if (diagonal == Diagonal::given) {
      t[k] = t[k] / column[begin + k];
    }
#pragma GCC unroll 8
    for (std::size_t i = k + 1; i < Width; ++i) {
      t[i] = t[i] - t[k] * column[begin + i];
    }
    updates.add(column, t[k]);
  }
#pragma GCC unroll 8
  for (std::size_t k = 0; k < Width; ++k) {
    x[begin + k] = t[k];
  }
  subtract<FromFirstRow, Width>(begin + Width, n, updates, x);
}

// Both solves leave the columns that do not fill a group to the end, where they are short.
template <std::size_t Width>
HWY_INLINE void solve_upper_by(std::size_t n, const double* ap, Diagonal diagonal, ZeroElement zero, double* x) {
  for (; n >= Width; n -= Width) {
    solve_upper_columns<Width>(ap, n - Width, diagonal, zero, x);
  }
  if constexpr (Width > 1) {
    solve_upper_by<Width / 2>(n, ap, diagonal, zero, x);
  }
}

template <std::size_t Width>
HWY_INLINE void solve_lower_by(std::size_t begin, std::size_t n, const double* ap, Diagonal diagonal, ZeroElement zero,
                               double* x) {
  for (; begin + Width <= n; begin += Width) {
    solve_lower_columns<Width>(n, ap, begin, diagonal, zero, x);
  }
  if constexpr (Width > 1) {
    solve_lower_by<Width / 2>(begin, n, ap, diagonal, zero, x);
  }
}

void solve_upper(std::size_t n, const double* ap, Diagonal diagonal, ZeroElement zero, double* x) {
  solve_upper_by<columns_per_pass>(n, ap, diagonal, zero, x);
}

void solve_lower(std::size_t n, const double* ap, Diagonal diagonal, ZeroElement zero, double* x) {
  solve_lower_by<columns_per_pass>(0, n, ap, diagonal, zero, x);
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
