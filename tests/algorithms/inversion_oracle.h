// SPDX-License-Identifier: MIT
// The inversion by elimination, step by step and element by element.
#pragma once

#include <cmath>

#include "support/numbers.h"

namespace zortest {

// A matrix of order n in columns of lda elements, indices from 1.
struct Matrix {
  int n;
  int lda;
  std::vector<double> a;

  Matrix(int order, int leading) : n(order), lda(leading), a(static_cast<std::size_t>(order * leading), 99) {}
  double& operator()(int i, int j) { return a[static_cast<std::size_t>(i - 1 + (j - 1) * lda)]; }
  double operator()(int i, int j) const { return a[static_cast<std::size_t>(i - 1 + (j - 1) * lda)]; }
};

inline Matrix random_matrix(Random& random, int n, int lda, bool symmetric) {
  Matrix a(n, lda);
  for (int j = 1; j <= n; ++j) {
    for (int i = 1; i <= n; ++i) {
      a(i, j) = symmetric && i < j ? 0 : random.uniform();
    }
  }
  for (int j = 1; symmetric && j <= n; ++j) {
    a(j, j) += 0.7 * n + 1;
    for (int i = 1; i < j; ++i) {
      a(i, j) = a(j, i);
    }
  }
  return a;
}

// The stated steps, element by element.
inline void invert_general(Matrix& a) {
  const int n = a.n;
  std::vector<int> exchanged;
  std::vector<int> at(static_cast<std::size_t>(n) + 1);
  for (int i = 1; i <= n; ++i) {
    at[static_cast<std::size_t>(i)] = i;
  }
  for (int k = 1; k <= n; ++k) {
    int p = k;
    for (int j = k; j <= n; ++j) {
      p = std::fabs(a(k, j)) >= std::fabs(a(k, p)) ? j : p;
    }
    if (std::fabs(a(k, p)) > std::fabs(a(k, k))) {
      std::swap(at[static_cast<std::size_t>(k)], at[static_cast<std::size_t>(p)]);
      for (int i = 1; i <= n; ++i) {
        std::swap(a(i, k), a(i, p));
      }
    }
    const double r = 1 / a(k, k);
    a(k, k) = 0;
    for (int i = 1; i <= n; ++i) {
      a(i, k) = -r * a(i, k);
    }
    for (int j = 1; j <= n; ++j) {
      if (j != k) {
        const double t = a(k, j);
        a(k, j) = t * r;
        for (int i = 1; i <= n && t != 0; ++i) {
          a(i, j) += t * a(i, k);
        }
      }
    }
    a(k, k) = r;
  }
  Matrix rows = a;  // row `at(i)` of the inverse is row i here
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= n; ++j) {
      a(at[static_cast<std::size_t>(i)], j) = rows(i, j);
    }
  }
}

inline bool invert_symmetric(Matrix& a, bool tested, std::vector<double>* pivots = nullptr) {
  const int n = a.n;
  for (int k = 1; k <= n; ++k) {
    if (tested && std::fabs(a(k, k)) <= 1e-8) {
      return false;
    }
    if (pivots != nullptr) {
      pivots->push_back(a(k, k));
    }
    const double r = -1 / a(k, k);
    a(k, k) = 0;
    for (int i = 1; i < k; ++i) {
      a(k, i) = -a(i, k);
    }
    for (int j = k + 1; j <= n; ++j) {
      a(j, k) = a(k, j);
    }
    for (int j = n; j >= 1; --j) {
      if (j != k) {
        const double t = a(k, j) * r;
        a(k, j) = t;
        for (int i = 1; i <= j && t != 0; ++i) {
          a(i, j) += t * a(i, k);
        }
        a(j, k) = t;
      }
    }
    a(k, k) = -r;
  }
  for (int j = 1; j <= n; ++j) {
    for (int i = 1; i < j; ++i) {
      a(j, i) = a(i, j);
    }
  }
  return true;
}

inline double identity_error(const Matrix& a, const std::vector<double>& inverse, int ldr) {
  double worst = 0;
  for (int i = 1; i <= a.n; ++i) {
    for (int j = 1; j <= a.n; ++j) {
      double sum = i == j ? -1 : 0;
      for (int k = 1; k <= a.n; ++k) {
        sum += a(i, k) * inverse[static_cast<std::size_t>(k - 1 + (j - 1) * ldr)];
      }
      worst = std::max(worst, std::fabs(sum));
    }
  }
  return worst;
}

}  // namespace zortest
