// SPDX-License-Identifier: MIT
// The elimination of a front in its stated steps, one element at a time on the packed triangle: blocks of three pivots,
// a remainder of two or one, and what a refused pivot leaves behind.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ZORTAVFactorization.h"
#include "support/by_address.h"
#include "support/numbers.h"

namespace zortest::front {

// Element (i, j), i >= j, indices from 1, of the lower triangle packed by columns.
inline std::size_t place(std::size_t n, std::size_t i, std::size_t j) {
  return (j - 1) * n - (j - 1) * j / 2 + i - 1;
}

// The arguments of a call, and what it leaves in them.
struct Front {
  std::size_t n = 0;
  std::size_t m = 0;
  std::vector<double> a = {};
  std::vector<double> d0 = {};
  double tolp = 1e-9;
  double tolr = 1e-9;
  double rmin = 1e30;
  int32_t neq = 0;
  int32_t npiv = 0;
  float flop1 = 0;
  float flop2 = 0;
  int32_t istat = -1;
  int32_t result = -1;

  double& at(std::size_t i, std::size_t j) { return a[place(n, i, j)]; }
  double& initial(std::size_t j) { return d0[static_cast<std::size_t>(neq) + j - 1]; }

  // By the library, on the given array of its elements; they are not copied back.
  void eliminate(Guarded<double>& there) {
    result = by_address(easlff_nt, static_cast<int32_t>(n), static_cast<int32_t>(m), there, rmin, d0, tolp, tolr, neq,
                        npiv, flop1, flop2, istat);
    EXPECT_TRUE(there.intact());
  }

  // By the stated steps.
  void eliminate_one_by_one() {
    istat = 0;
    bool good = true;
    for (std::size_t k = 1; k <= m && good; k += 3) {
      good = block(k, std::min<std::size_t>(3, m - k + 1));
    }
    result = good ? 0 : 1;
  }

 private:
  bool accepted(std::size_t k) {
    ++neq;
    double left = at(k, k);
    if (tolp > std::abs(left)) {
      istat = 6;
      rmin = left;
    } else {
      const double r = left / d0[static_cast<std::size_t>(neq - 1)];
      if (r < rmin || std::isnan(rmin) || std::isnan(r)) {
        rmin = r;
      }
      if (!(tolr >= r)) {
        ++npiv;
        return true;
      }
      istat = 34;
      left = r;
    }
    const std::size_t bound = n * m - m * (m + 1) / 2;
    for (std::size_t p = place(n, k, k) + 1; p < bound; ++p) {
      a[p] = 0;
    }
    at(k, k) = left;
    return false;
  }

  // Row after row: x(i,p) = a(i,p) - l(i,1)·u(1,p) - .. is a pivot or, divided by column p's pivot, a multiplier; u
  // are the values before the division in the block's own rows.
  bool block(std::size_t k, std::size_t pivots) {
    double u[3][3] = {};
    double d[3] = {};
    const std::size_t first = k + pivots;
    for (std::size_t i = k; i <= n; ++i) {
      for (std::size_t p = 0; p < pivots && k + p <= i; ++p) {
        double& x = at(i, k + p);
        for (std::size_t q = 0; q < p; ++q) {
          x = x - at(i, k + q) * u[q][p];
        }
        if (i == k + p) {
          if (!accepted(i)) {
            return false;
          }
          d[p] = x;
        } else {
          if (i < first) {
            u[p][i - k] = x;
          }
          x = x * (1 / d[p]);
        }
      }
    }
    for (std::size_t c = first; c <= n; ++c) {
      for (std::size_t i = c; i <= n; ++i) {
        const bool own_step = pivots < 3 && c == n && (n - first + 1) % 2 == 1;
        for (std::size_t p = k; p < first; ++p) {
          const double dp = d[p - k];
          at(i, c) = own_step ? at(i, c) - at(c, p) * at(c, p) * dp : at(i, c) + at(i, p) * -(at(c, p) * dp);
        }
      }
    }
    return true;
  }
};

}  // namespace zortest::front
