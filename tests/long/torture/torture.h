// SPDX-License-Identifier: MIT
// The kinds of the torture's matrices: of every five one is singular; every second one is then spoiled at each of its
// pivots in turn; elements reach from 1e-150 to 1e150.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "long/seeds.h"
#include "support/numbers.h"

namespace zortest {

struct Kind {
  bool singular;
  bool refused;  // also with a refused pivot at every position
  int size;

  Kind(Random& random, int number)
      : singular(number % 5 == 4),
        refused(number % 2 == 1),
        size(!refused && number % 24 == 0 ? random.integer(64, 146) : random.integer(1, 44)) {}
};

// Powers of two s(i), so that S·A·S is exact and reaches what the kinds promise; from 1 to n.
class Scaling {
 public:
  Scaling(Random& random, int n) : exponent_(static_cast<std::size_t>(n) + 1) {
    const int most = 249;  // s(i)·s(j) up to 2^498 = 1e150
    const int all = random.integer(0, 3) == 0 ? 0 : random.integer(0, 1) == 0 ? most : -most;
    const bool graded = random.integer(0, 2) == 0;
    for (int& e : exponent_) {
      e = graded ? random.integer(-most, most) : all;
    }
  }
  double of(std::size_t i, std::size_t j, double x) const { return std::ldexp(x, exponent_[i] + exponent_[j]); }
  long double back(std::size_t i, std::size_t j, long double x) const {
    return std::ldexp(x, -exponent_[i] - exponent_[j]);
  }
  // l(i,j) of the factorization with a unit diagonal.
  double quotient(std::size_t i, std::size_t j, double x) const { return std::ldexp(x, exponent_[i] - exponent_[j]); }
  // l(i,j) of the Cholesky factorization.
  double of_row(std::size_t i, double x) const { return std::ldexp(x, exponent_[i]); }

 private:
  std::vector<int> exponent_;
};

// A lower triangle of small integers with a unit diagonal, element (i, j) at [i][j], indices from 1.
using Rows = std::vector<std::vector<double>>;

inline Rows integer_triangle(Random& random, int n) {
  Rows l(static_cast<std::size_t>(n) + 1, std::vector<double>(static_cast<std::size_t>(n) + 1));
  for (std::size_t i = 1; i < l.size(); ++i) {
    for (std::size_t j = 1; j < i; ++j) {
      l[i][j] = random.integer(-1, 1);
    }
    l[i][i] = 1;
  }
  return l;
}

// Symmetric with a diagonal that outweighs its row, of the given signs.
inline Rows dominant_matrix(Random& random, const std::vector<double>& sign) {
  const std::size_t n = sign.size() - 1;
  Rows a(n + 1, std::vector<double>(n + 1));
  for (std::size_t i = 1; i <= n; ++i) {
    for (std::size_t j = 1; j < i; ++j) {
      a[i][j] = a[j][i] = random.uniform();
    }
  }
  for (std::size_t i = 1; i <= n; ++i) {
    double sum = random.uniform(0.1, 2);
    for (std::size_t j = 1; j <= n; ++j) {
      sum += j == i ? 0 : std::fabs(a[i][j]);
    }
    a[i][i] = sign[i] * sum;
  }
  return a;
}

// Row and column q become a combination of those before it, so that pivot q vanishes but for rounding.
inline void make_dependent(Random& random, Rows& a, std::size_t q) {
  std::vector<double> c(q);
  for (std::size_t k = 1; k < q; ++k) {
    c[k] = random.uniform();
  }
  for (std::size_t i = 1; i < a.size(); ++i) {
    long double sum = 0;
    for (std::size_t k = 1; k < q && i != q; ++k) {
      sum += static_cast<long double>(c[k]) * a[k][i];
    }
    if (i != q) {
      a[i][q] = a[q][i] = static_cast<double>(sum);
    }
  }
  long double corner = 0;
  for (std::size_t k = 1; k < q; ++k) {
    corner += static_cast<long double>(c[k]) * a[q][k];
  }
  a[q][q] = static_cast<double>(corner);
}

inline int matrices_a_seed() {
  return number_from_environment("ZORTAV_TEST_MATRICES", 60);
}

// visit(random, kind, number) for every matrix of every seed.
template <class Visit>
void for_matrices(const char* name, Visit visit) {
  const int only = number_from_environment("ZORTAV_TEST_MATRIX", -1);
  for (const std::uint64_t seed : seeds()) {
    for (int number = 0; number < matrices_a_seed() && !testing::Test::HasFailure(); ++number) {
      if (only >= 0 && number != only) {
        continue;
      }
      SCOPED_TRACE(testing::Message() << name << ", to repeat it: ZORTAV_TEST_SEED=" << seed
                                      << " ZORTAV_TEST_MATRIX=" << number);
      Random random(seed * 1000003 + static_cast<std::uint64_t>(number));
      const Kind kind(random, number);
      visit(random, kind, number);
    }
  }
}

// The largest error of what the factors multiply to, product(i, j), in units of the largest element; the scaling is taken
// back.
template <class Product>
long double backward_error(const Rows& a, const Scaling& scaling, Product product) {
  long double error = 0;
  long double largest = 0;
  for (std::size_t i = 1; i < a.size(); ++i) {
    for (std::size_t j = 1; j <= i; ++j) {
      error = std::max(error, std::fabs(scaling.back(i, j, product(i, j)) - a[i][j]));
      largest = std::max(largest, std::fabs(static_cast<long double>(a[i][j])));
    }
  }
  EXPECT_LE(error / largest, 1e-13L);
  return error / largest;
}

// check(random, kind) returns a backward error; the worst of all is printed.
template <class Check>
void for_rounded_matrices(const char* name, Check check) {
  long double worst = 0;
  for_matrices(name, [&](Random& random, const Kind& kind, int) { worst = std::max(worst, check(random, kind)); });
  std::printf("worst backward error: %.2e\n", static_cast<double>(worst));
}

}  // namespace zortest
