// SPDX-License-Identifier: MIT
// One row of the bordering Cholesky factorization, in place. eaxfch2.cpp states the order of the operations.
#pragma once

#include <cstdint>

#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr std::int64_t group_columns = 4;
constexpr std::int64_t plain_length = 9;  // shorter sums have no partial sums
constexpr std::int64_t sum_step = 8;

// How many of a sum's terms, from its first, are taken in two partial sums.
inline std::int64_t whole_eights(std::int64_t len) {
  return len < plain_length ? 0 : len - len % sum_step;
}

// Row i, counted from 1, of a triangle packed by rows.
inline double* packed_row(double* a, std::int64_t i) {
  return a + i * (i - 1) / 2;
}

// sum[c] := ordered sum of x(k)·y[c](k), k < len, from sum[c]
template <int Columns>
inline void ordered_sums(std::int64_t len, const double* x, const double* const* y, double* sum) {
  std::int64_t k = 0;
  if (const std::int64_t whole = whole_eights(len); whole > 0) {
    const hn::FixedTag<double, 2> d;  // one lane a partial sum
    hn::Vec<decltype(d)> partial[Columns];
    for (int c = 0; c < Columns; ++c) {
      partial[c] = hn::InsertLane(hn::Zero(d), 0, sum[c]);
    }
    for (; k < whole; k += 2) {
      const auto terms = hn::LoadU(d, x + k);
      for (int c = 0; c < Columns; ++c) {
        partial[c] = hn::Add(partial[c], hn::Mul(terms, hn::LoadU(d, y[c] + k)));
      }
    }
    for (int c = 0; c < Columns; ++c) {
      sum[c] = hn::GetLane(partial[c]) + hn::ExtractLane(partial[c], 1);
    }
  }
  for (; k < len; ++k) {
    for (int c = 0; c < Columns; ++c) {
      sum[c] = sum[c] + x[k] * y[c][k];
    }
  }
}

// Row i (from 1). False, with the pivot in `refused`, when the pivot is not above tol.
inline bool factor_row(std::int64_t i, double tol, double* a, double* refused) {
  double* const row = packed_row(a, i);
  for (std::int64_t j0 = 0; j0 < i - 1; j0 += group_columns) {
    const std::int64_t columns = i - 1 - j0 < group_columns ? i - 1 - j0 : group_columns;
    const double* above[group_columns];
    double sum[group_columns];
    for (std::int64_t c = 0; c < columns; ++c) {
      above[c] = packed_row(a, j0 + c + 1);
      sum[c] = -row[j0 + c];
    }
    if (columns == group_columns) {
      ordered_sums<group_columns>(j0, row, above, sum);
    } else {
      for (std::int64_t c = 0; c < columns; ++c) {
        ordered_sums<1>(j0, row, above + c, sum + c);
      }
    }
    for (std::int64_t c = 0; c < columns; ++c) {
      for (std::int64_t k = j0; k < j0 + c; ++k) {
        sum[c] = sum[c] + row[k] * above[c][k];
      }
      row[j0 + c] = sum[c] / -above[c][j0 + c];
    }
  }
  double squares = 0;
  const double* const itself = row;
  ordered_sums<1>(i - 1, row, &itself, &squares);
  const double pivot = row[i - 1] - squares;
  if (tol >= pivot) {
    *refused = pivot;
    return false;
  }
  row[i - 1] = __builtin_sqrt(pivot);
  return true;
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
