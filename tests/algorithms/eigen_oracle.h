// SPDX-License-Identifier: MIT
// The stages of the eigen-solver as plain loops over indices from 1, in the documented order of operations.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

namespace oracle {

using Numbers = std::vector<double>;

inline std::size_t size(int n) {
  return static_cast<std::size_t>(n);
}
inline std::size_t packed(int n) {
  return size(n) * (size(n) + 1) / 2;
}

// Element i from 1; element (i, j), j <= i, of a triangle packed by rows; element (i, j) of a full matrix by columns.
struct Vector {
  Numbers& x;
  double& operator()(int i) const { return x[size(i - 1)]; }
};
struct Triangle {
  Numbers& x;
  double& operator()(int i, int j) const { return x[packed(i - 1) + size(j - 1)]; }
};
struct Full {
  Numbers& x;
  int n;
  double& operator()(int i, int j) const { return x[size(i - 1) + size(j - 1) * size(n)]; }
};

// Terms 1..n in eight partial sums, joined by one tree.
template <class Term>
double eight_lane_sum(int n, Term term) {
  double lane[8] = {0, 0, 0, 0, 0, 0, 0, 0};
  for (int k = 1; k <= n; ++k) {
    lane[(k - 1) % 8] += term(k);
  }
  const double even = (lane[0] + lane[4]) + (lane[2] + lane[6]);
  const double odd = (lane[1] + lane[5]) + (lane[3] + lane[7]);
  return even + odd;
}

inline void tridiagonalize(int n, Numbers& packed, Numbers& diagonal, Numbers& below) {
  const Triangle a{packed};
  const Vector d{diagonal};
  const Vector e{below};
  for (int i = n; i >= 3; --i) {
    const int l = i - 1;
    Numbers work(size(l));
    const Vector p{work};
    double h = eight_lane_sum(l, [&](int k) { return a(i, k) * a(i, k); });
    d(i) = a(i, i);
    e(i) = a(i, l);
    if (h == 0.0) {
      a(i, i) = 0.0;
      continue;
    }
    const double f = a(i, l);
    const double g = f >= 0.0 ? -std::sqrt(h) : std::sqrt(h);
    e(i) = g;
    h -= f * g;
    a(i, l) = f - g;
    for (int j = 1; j <= l; ++j) {
      double sum = eight_lane_sum(j, [&](int k) { return a(j, k) * a(i, k); });
      for (int k = j + 1; k <= l; ++k) {
        sum += a(k, j) * a(i, k);
      }
      p(j) = sum * (1.0 / h);
    }
    const double hh = eight_lane_sum(l, [&](int j) { return p(j) * a(i, j); }) / (h + h);
    for (int j = 1; j <= l; ++j) {
      p(j) -= hh * a(i, j);
    }
    for (int j = 1; j <= l; ++j) {
      for (int k = 1; k <= j; ++k) {
        a(j, k) = a(j, k) - a(i, j) * p(k) - p(j) * a(i, k);
      }
    }
    a(i, i) = h;
  }
  d(1) = a(1, 1);
  e(1) = 0.0;
  if (n >= 2) {
    d(2) = a(2, 2);
    e(2) = a(2, 1);
  }
}

// The status is 0, or the index of the eigenvalue that did not converge.
inline int iterate(int n, Numbers& diagonal, Numbers& below, Numbers& vectors) {
  const Vector d{diagonal};
  const Vector e{below};
  const Full v{vectors, n};
  v(1, 1) = 1.0;
  if (n < 2) {
    return 0;
  }
  for (int i = 1; i <= n; ++i) {
    v(i, i) = 1.0;
    e(i) = i < n ? e(i + 1) : 0.0;
  }
  for (int l = 1; l <= n; ++l) {
    int count = 0;
    while (true) {
      int m = l;
      for (; m < n; ++m) {
        const double dd = std::abs(d(m)) + std::abs(d(m + 1));
        if (std::abs(e(m)) + dd == dd) {
          break;
        }
      }
      if (m == l) {
        break;
      }
      if (count++ == 30) {
        return l;
      }
      double g = (d(l + 1) - d(l)) / (2.0 * e(l));
      double r = std::abs(std::sqrt(g * g + 1.0));
      g = g >= 0.0 ? d(m) - d(l) + e(l) / (g + r) : d(m) - d(l) + e(l) / (g - r);
      double s = 1.0;
      double c = 1.0;
      double p = 0.0;
      for (int i = m - 1; i >= l; --i) {
        const double f = s * e(i);
        const double b = c * e(i);
        if (std::abs(f) >= std::abs(g)) {
          c = g / f;
          r = std::sqrt(c * c + 1.0);
          e(i + 1) = f * r;
          s = 1.0 / r;
          c *= s;
        } else {
          s = f / g;
          r = std::sqrt(s * s + 1.0);
          e(i + 1) = g * r;
          c = 1.0 / r;
          s *= c;
        }
        g = d(i + 1) - p;
        r = (d(i) - g) * s + 2.0 * c * b;
        p = s * r;
        d(i + 1) = g + p;
        g = c * r - b;
        for (int k = 1; k <= n; ++k) {
          const double t = v(k, i + 1);
          v(k, i + 1) = s * v(k, i) + c * t;
          v(k, i) = c * v(k, i) - s * t;
        }
      }
      d(l) -= p;
      e(l) = g;
      e(m) = 0.0;
    }
  }
  return 0;
}

// The reflectors in blocks of 32 rows, operation by operation as it is documented.
inline void transform_back_in_blocks(int n, Numbers& packed, Numbers& vectors) {
  const Triangle a{packed};
  for (int first = 3; first <= n; first += 32) {
    std::vector<int> rows;
    for (int i = first; i <= n && i < first + 32; ++i) {
      if (a(i, i) != 0.0) {
        rows.push_back(i);
      }
    }
    const std::size_t count = rows.size();
    const int length = rows.empty() ? 0 : rows.back() - 1;
    const auto u = [&](std::size_t r, int k) { return k < rows[r] ? a(rows[r], k) : 0.0; };
    Numbers g(count * count);
    for (std::size_t r = 0; r < count; ++r) {
      for (std::size_t q = 0; q < r; ++q) {
        g[r * count + q] = eight_lane_sum(length, [&](int k) { return u(r, k) * u(q, k); });
      }
    }
    for (int j = 0; j < n; ++j) {
      double* const v = vectors.data() + size(j) * size(n) - 1;
      Numbers w(count);
      for (std::size_t r = 0; r < count; ++r) {
        w[r] = eight_lane_sum(length, [&](int k) { return u(r, k) * v[k]; });
        for (std::size_t q = 0; q < r; ++q) {
          w[r] -= g[r * count + q] * w[q];
        }
        w[r] *= 1.0 / a(rows[r], rows[r]);
      }
      for (int k = 1; k <= length; ++k) {
        for (std::size_t r = 0; r < count; ++r) {
          v[k] -= u(r, k) * w[r];
        }
      }
    }
  }
}

}  // namespace oracle
