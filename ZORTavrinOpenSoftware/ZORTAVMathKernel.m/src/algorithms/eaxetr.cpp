// SPDX-License-Identifier: MIT
// T = Qᵀ·A·Q, tridiagonal, by Householder reflectors H = I − u·uᵀ/h on the packed rows of A, from the last row upward.
// Method: Martin, Reinsch and Wilkinson, Handbook for Automatic Computation II, contribution II/2 (tred3), without the
// scaling of the rows.
#include <cmath>
#include <cstdint>

#include "ZORTAVEigenSolver.h"

namespace {

constexpr unsigned lanes = 8;

// Eight partial sums, element k in lane k mod 8, and one tree.
double dot(std::int64_t n, const double* x, const double* y) {
  double s[lanes] = {};
  unsigned lane = 0;
  for (const double* const end = x + n; x != end; ++x, ++y, ++lane) {
    s[lane % lanes] += *x * *y;
  }
  return ((s[0] + s[4]) + (s[2] + s[6])) + ((s[1] + s[5]) + (s[3] + s[7]));
}

double* row(double* a, std::int64_t i) {
  return a + i * (i + 1) / 2;
}

}  // namespace

void eaxetr(const int32_t* order, double* a, double* d, double* e) {
  const std::int64_t n = *order;
  if (n < 2) {
    d[0] = a[0];
    e[0] = 0.0;
    return;
  }
  for (std::int64_t l = n - 1; l >= 2; --l) {
    double* const u = row(a, l);
    double h = dot(l, u, u);
    const double f = u[l - 1];
    d[l] = u[l];
    if (h == 0.0) {
      e[l] = f;
      u[l] = 0.0;
      continue;
    }
    const double g = f < 0.0 ? std::sqrt(h) : -std::sqrt(h);
    e[l] = g;
    h = h - f * g;
    u[l - 1] = f - g;
    for (std::int64_t j = 0; j < l; ++j) {
      const double* const aj = row(a, j);
      e[j] = dot(j + 1, aj, u);
      for (std::int64_t k = 0; k < j; ++k) {
        e[k] += aj[k] * u[j];
      }
    }
    const double inverse = 1.0 / h;
    for (std::int64_t j = 0; j < l; ++j) {
      e[j] = e[j] * inverse;
    }
    const double hh = dot(l, e, u) / (h + h);
    for (std::int64_t j = 0; j < l; ++j) {
      e[j] = e[j] - hh * u[j];
    }
    for (std::int64_t j = 0; j < l; ++j) {
      double* const aj = row(a, j);
      for (std::int64_t k = 0; k <= j; ++k) {
        aj[k] = aj[k] - u[j] * e[k] - e[j] * u[k];
      }
    }
    u[l] = h;
  }
  e[1] = a[1];
  d[1] = a[2];
  d[0] = a[0];
  e[0] = 0.0;
}
