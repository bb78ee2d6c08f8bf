// SPDX-License-Identifier: MIT
// What an eigen-solution must satisfy, measured in extended precision.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "algorithms/eigen_oracle.h"

namespace zortest {

// Of order n, indices from 1.
class FullMatrix {
 public:
  explicit FullMatrix(int n) : n_(n), x_(oracle::size(n) * oracle::size(n)) {}
  int order() const { return n_; }
  long double& operator()(int i, int j) { return x_[place(i, j)]; }
  long double operator()(int i, int j) const { return x_[place(i, j)]; }
  long double norm() const {
    long double sum = 0;
    for (const long double x : x_) {
      sum += x * x;
    }
    return std::sqrt(sum);
  }
  // The lower triangle by rows.
  std::vector<double> triangle() const {
    std::vector<double> v;
    for (int i = 1; i <= n_; ++i) {
      for (int j = 1; j <= i; ++j) {
        v.push_back(static_cast<double>((*this)(i, j)));
      }
    }
    return v;
  }

 private:
  std::size_t place(int i, int j) const { return oracle::size(i - 1) + oracle::size(j - 1) * oracle::size(n_); }
  int n_;
  std::vector<long double> x_;
};

inline long double largest_difference(const FullMatrix& a, const FullMatrix& b) {
  long double largest = 0;
  for (int j = 1; j <= a.order(); ++j) {
    for (int i = 1; i <= a.order(); ++i) {
      largest = std::max(largest, std::fabs(a(i, j) - b(i, j)));
    }
  }
  return largest;
}

// x := H(n)···H(3)·x with H(i) = I − u·uᵀ/h, u = a(i,1..i−1), h = a(i,i), a packed by rows.
inline void reflect_all(int n, const std::vector<double>& a, std::vector<long double>& x) {
  for (int i = 3; i <= n; ++i) {
    const double* const u = a.data() + oracle::packed(i - 1);
    const double h = u[i - 1];
    long double s = 0;
    for (int k = 0; h != 0 && k < i - 1; ++k) {
      s += static_cast<long double>(u[k]) * x[oracle::size(k)];
    }
    for (int k = 0; h != 0 && k < i - 1; ++k) {
      x[oracle::size(k)] -= s / h * u[k];
    }
  }
}

// Q·T·Qᵀ for the reflectors and the tridiagonal matrix of a reduction: H·A·H = A − u·wᵀ − w·uᵀ for one reflector after
// the other, w = p − (uᵀ·p/2h)·u, p = A·u/h, each beyond whose length the matrix is still tridiagonal.
inline FullMatrix reduced_matrix_restored(int n, const std::vector<double>& reflectors, const std::vector<double>& d,
                                          const std::vector<double>& e) {
  FullMatrix a(n);
  for (int i = 1; i <= n; ++i) {
    a(i, i) = d[oracle::size(i - 1)];
    if (i > 1) {
      a(i, i - 1) = a(i - 1, i) = e[oracle::size(i - 1)];
    }
  }
  std::vector<long double> w(oracle::size(n));
  for (int i = 3; i <= n; ++i) {
    const double* const u = reflectors.data() + oracle::packed(i - 1) - 1;
    const double h = u[i];
    if (h == 0) {
      continue;
    }
    long double up = 0;
    for (int j = 1; j < i; ++j) {
      long double p = 0;
      for (int k = 1; k < i; ++k) {
        p += a(k, j) * u[k];
      }
      w[oracle::size(j)] = p / h;
      up += p / h * u[j];
    }
    for (int j = 1; j < i; ++j) {
      w[oracle::size(j)] -= up / (2 * h) * u[j];
    }
    for (int j = 1; j < i; ++j) {
      for (int k = 1; k < i; ++k) {
        a(k, j) -= u[k] * w[oracle::size(j)] + w[oracle::size(k)] * u[j];
      }
    }
    const long double last = a(i, i - 1);
    for (int k = 1; k < i; ++k) {
      a(i, k) = a(k, i) = ((k == i - 1 ? 1 : 0) - static_cast<long double>(u[i - 1]) * u[k] / h) * last;
    }
  }
  return a;
}

struct EigenMeasures {
  long double orthogonality = 0;  // max |VᵀV − I|
  long double residual = 0;       // max |A·V − V·D|
};

inline EigenMeasures measure(const FullMatrix& a, const std::vector<double>& d, const std::vector<double>& v) {
  const int n = a.order();
  EigenMeasures errors;
  const auto column = [&](int j) { return v.data() + oracle::size(j) * oracle::size(n); };
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i <= j; ++i) {
      long double sum = i == j ? -1 : 0;
      for (int k = 0; k < n; ++k) {
        sum += static_cast<long double>(column(i)[k]) * column(j)[k];
      }
      errors.orthogonality = std::max(errors.orthogonality, std::fabs(sum));
    }
    for (int i = 0; i < n; ++i) {
      long double r = -static_cast<long double>(d[oracle::size(j)]) * column(j)[i];
      for (int k = 0; k < n; ++k) {
        r += a(k + 1, i + 1) * column(j)[k];  // symmetric, and its columns stand together
      }
      errors.residual = std::max(errors.residual, std::fabs(r));
    }
  }
  return errors;
}

}  // namespace zortest
