// SPDX-License-Identifier: MIT
// Solves with packed triangles in plain loops of a fixed order.
#pragma once

#include <cstddef>
#include <vector>

#include "support/numbers.h"

namespace zortest {

// The position of T(i,j), all counted from 1.
inline std::size_t position(bool upper, int n, int i, int j) {
  return static_cast<std::size_t>(upper ? i + j * (j - 1) / 2 : i + (j - 1) * (2 * n - j) / 2);
}

struct Triangle {
  bool upper;
  bool transposed;
  bool unit;
  int n;
  std::vector<double> ap;

  double operator()(int i, int j) const { return ap[position(upper, n, i, j) - 1]; }
};

// Well-conditioned, so that nothing overflows; a unit diagonal is not to be read.
inline Triangle random_triangle(Random& random, int shape, int n) {
  Triangle t{(shape & 1) != 0, (shape & 2) != 0, (shape & 4) != 0, n, {}};
  t.ap = random.vector(static_cast<std::size_t>(n) * static_cast<std::size_t>(n + 1) / 2, -1.0 / n, 1.0 / n);
  for (int j = 1; j <= n; ++j) {
    t.ap[position(t.upper, n, j, j) - 1] = t.unit ? nan : random.uniform(0.5, 2);
  }
  return t;
}

// The published loops, on x(1)..x(n).
inline std::vector<double> solved(const Triangle& t, std::vector<double> b) {
  const auto x = [&b](int i) -> double& { return b[static_cast<std::size_t>(i - 1)]; };
  const bool forward = t.upper == t.transposed;
  for (int step = 1; step <= t.n; ++step) {
    const int j = forward ? step : t.n + 1 - step;
    if (t.transposed) {
      for (int i = t.upper ? 1 : t.n; i != j; i += t.upper ? 1 : -1) {
        x(j) -= t(i, j) * x(i);
      }
      x(j) = t.unit ? x(j) : x(j) / t(j, j);
    } else if (x(j) != 0) {
      x(j) = t.unit ? x(j) : x(j) / t(j, j);
      for (int i = t.upper ? 1 : j + 1; i <= (t.upper ? j - 1 : t.n); ++i) {
        x(i) -= x(j) * t(i, j);
      }
    }
  }
  return b;
}

// Element (i, j) of the upper triangle packed by columns, from 0.
inline std::size_t at(std::size_t i, std::size_t j) {
  return i + j * (j + 1) / 2;
}

inline std::vector<double> random_factor(Random& random, std::size_t n) {
  const double size = 1.0 / static_cast<double>(n);
  std::vector<double> u = random.vector(n * (n + 1) / 2, -size, size);
  for (std::size_t j = 0; j < n; ++j) {
    u[at(j, j)] = random.uniform(0.5, 2);
  }
  return u;
}

// The published loops with a factor U and its transpose, for one right-hand side.
inline std::vector<double> solved(const std::vector<double>& u, std::vector<double> b) {
  const std::size_t n = b.size();
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t i = 0; i < j; ++i) {
      b[j] -= b[i] * u[at(i, j)];
    }
    b[j] /= u[at(j, j)];
  }
  for (std::size_t j = n; j-- > 0;) {
    b[j] /= u[at(j, j)];
    for (std::size_t i = 0; i < j; ++i) {
      b[i] -= b[j] * u[at(i, j)];
    }
  }
  return b;
}

}  // namespace zortest
