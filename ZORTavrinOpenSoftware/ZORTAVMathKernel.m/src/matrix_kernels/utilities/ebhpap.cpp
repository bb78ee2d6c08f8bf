// SPDX-License-Identifier: MIT
// R := P·diag(d)·Pᵀ, as W := diag(d)·Pᵀ and R := P·W.
#include <algorithm>
#include <cstdint>

#include "ZORTAVMatrixUtilities.h"

namespace {

// Squares of this order are transposed at a time, so that neither matrix is walked across its columns for long.
constexpr std::int64_t square = 16;

// W(j,i) := d(j)·P(i,j)
void scaled_transpose(std::int64_t n, const double* p, const double* d, double* w) {
  for (std::int64_t i0 = 0; i0 < n; i0 += square) {
    const std::int64_t i1 = std::min(i0 + square, n);
    for (std::int64_t j0 = 0; j0 < n; j0 += square) {
      const std::int64_t j1 = std::min(j0 + square, n);
      for (std::int64_t i = i0; i < i1; ++i) {
        for (std::int64_t j = j0; j < j1; ++j) {
          w[j + i * n] = d[j] * p[i + j * n];
        }
      }
    }
  }
}

}  // namespace

void ebhpap(const int32_t* n, const double* p, const double* d, double* w, double* r) {
  scaled_transpose(*n, p, d, w);
  eaxmmp(n, n, n, p, w, r);
}
