// SPDX-License-Identifier: MIT
// V := Q·V with Q the product of the reflectors that eaxetr left in the packed rows of A.
#include <cstdint>

#include "ZORTAVEigenSolver.h"

namespace {

constexpr unsigned lanes = 8;

double dot(std::int64_t n, const double* x, const double* y) {
  double s[lanes] = {};
  unsigned lane = 0;
  for (const double* const end = x + n; x != end; ++x, ++y, ++lane) {
    s[lane % lanes] += *x * *y;
  }
  return ((s[0] + s[4]) + (s[2] + s[6])) + ((s[1] + s[5]) + (s[3] + s[7]));
}

}  // namespace

void eaxevp(const int32_t* order, const double* a, double* v) {
  const std::int64_t n = *order;
  for (std::int64_t l = 2; l < n; ++l) {
    const double* const u = a + l * (l + 1) / 2;
    const double h = u[l];
    if (h == 0.0) {
      continue;
    }
    for (std::int64_t j = 0; j < n; ++j) {
      double* const x = v + j * n;
      const double factor = dot(l, u, x) * (-1.0 / h);
      for (std::int64_t k = 0; k < l; ++k) {
        x[k] += factor * u[k];
      }
    }
  }
}
