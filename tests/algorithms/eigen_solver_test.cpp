// SPDX-License-Identifier: MIT
// The whole eigen-solution: residual and orthogonality, known spectra, and that it is its stages one after the other.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "ZORTAVEigenSolver.h"
#include "algorithms/eigen_oracle.h"
#include "support/numbers.h"

namespace {

using oracle::Numbers;
using oracle::packed;
using oracle::size;
using zortest::expect_same_bits;
using zortest::Guarded;
using zortest::Random;
using Element = std::function<double(int i, int j)>;  // from 0

constexpr double eps = std::numeric_limits<double>::epsilon();
constexpr int32_t ascending = 1;
constexpr int32_t by_size = 2;
constexpr double pi = 3.14159265358979323846;

std::size_t at(int i, int j) {
  return packed(std::max(i, j)) + size(std::min(i, j));
}

Numbers pack(int n, const Element& element) {
  Numbers a;
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) {
      a.push_back(element(i, j));
    }
  }
  return a;
}

struct Pairs {
  int32_t result;
  int32_t ierr = -77;
  Numbers d, v, rest;  // what is left in A and E
};

// By eaxeig, or by its stages with V cleared between the first two. Sizes and offsets are those of n >= 0.
Pairs solve(int n, const Numbers& matrix, int32_t ord, bool by_stages = false) {
  const std::size_t offset = size(n % 3);
  Guarded<double> a(matrix, offset), d(size(n), offset), e(size(n), offset), v(Numbers(size(n) * size(n), 9.0), offset);
  Pairs pairs;
  if (by_stages) {
    eaxetr(&n, a.data(), d.data(), e.data());
    std::fill_n(v.data(), v.size(), 0.0);
    pairs.result = eaxeql(&n, d.data(), e.data(), v.data(), &pairs.ierr);
    if (pairs.result == 0) {
      eaxeor(&ord, &n, d.data(), v.data());
      eaxevp(&n, a.data(), v.data());
    }
  } else {
    pairs.result = eaxeig(&n, &ord, a.data(), d.data(), v.data(), e.data(), &pairs.ierr);
  }
  EXPECT_TRUE(a.intact() && d.intact() && v.intact() && e.intact());
  pairs.d = d.values();
  pairs.v = v.values();
  pairs.rest = a.values();
  pairs.rest.insert(pairs.rest.end(), e.data(), e.data() + e.size());
  return pairs;
}

// Of the solution in both orders; returns the ascending values.
Numbers expect_decomposition(int n, const Numbers& a) {
  const double bound = 50.0 * n * eps;
  Numbers values;
  double norm = 0.0;
  for (int i = 0; i < n; ++i) {
    double row = 0.0;
    for (int j = 0; j < n; ++j) {
      row += std::abs(a[at(i, j)]);
    }
    norm = std::max(norm, row);
  }
  for (const int32_t ord : {by_size, ascending}) {
    const Pairs pairs = solve(n, a, ord);
    EXPECT_EQ(0, pairs.result);
    EXPECT_EQ(-77, pairs.ierr);
    EXPECT_TRUE(std::is_sorted(pairs.d.begin(), pairs.d.end(), [&](double x, double y) {
      return ord == ascending ? x < y : std::abs(x) > std::abs(y);
    }));
    const auto column = [&](int j) { return pairs.v.data() + size(j) * size(n); };
    for (int j = 0; j < n; ++j) {
      double residual = 0.0;
      for (int i = 0; i < n; ++i) {
        double r = -pairs.d[size(j)] * column(j)[i];
        double product = i == j ? -1.0 : 0.0;
        for (int k = 0; k < n; ++k) {
          r += a[at(i, k)] * column(j)[k];
          product += column(i)[k] * column(j)[k];
        }
        residual = std::max(residual, std::abs(r));
        EXPECT_LE(std::abs(product), bound) << "columns " << i << " and " << j;
      }
      EXPECT_LE(residual, bound * norm) << "pair " << j;
    }
    values = pairs.d;
  }
  return values;
}

TEST(eaxeig, residual_and_orthogonality) {
  Random random(4311);
  for (const int n : {1, 2, 3, 4, 5, 6, 7, 8, 9, 15, 16, 17, 33, 40, 64, 129, 200}) {
    SCOPED_TRACE(n);
    expect_decomposition(n, random.vector(packed(n)));
  }
  for (const double factor : {0.5, 2.0}) {
    expect_decomposition(45, pack(45, [&](int i, int j) { return random.uniform() * std::pow(factor, i + j); }));
  }
  // Three blocks without any coupling.
  expect_decomposition(45, pack(45, [&](int i, int j) { return i / 15 == j / 15 ? random.uniform() : 0.0; }));
}

TEST(eaxeig, known_spectra) {
  Random random(4312);
  struct Case {
    const char* name;
    Element element;
    std::function<double(int k)> eigenvalue;  // k from 0, ascending
    double scale;
  };
  for (const int n : {1, 2, 3, 4, 16, 33, 90}) {
    const Numbers w = random.vector(size(n));
    double square = 0.0;
    for (const double x : w) {
      square += x * x;
    }
    const Case cases[] = {
        {"second differences", [](int i, int j) { return i == j ? 2.0 : (i - j == 1 ? -1.0 : 0.0); },
         [n](int k) { return 2.0 - 2.0 * std::cos((k + 1) * pi / (n + 1)); }, 1.0},
        {"reflector", [&](int i, int j) { return (i == j ? 1.0 : 0.0) - 2.0 * w[size(i)] * w[size(j)] / square; },
         [](int k) { return k == 0 ? -1.0 : 1.0; }, 1.0},
        {"ones", [](int, int) { return 1.0; }, [n](int k) { return k == n - 1 ? n : 0.0; }, 1.0 * n}};
    for (const Case& c : cases) {
      SCOPED_TRACE(testing::Message() << c.name << ", order " << n);
      const Numbers found = expect_decomposition(n, pack(n, c.element));
      for (int k = 0; k < n; ++k) {
        EXPECT_NEAR(c.eigenvalue(k), found[size(k)], 20.0 * n * eps * c.scale) << "eigenvalue " << k;
      }
    }
  }
}

TEST(eaxeig, is_its_stages) {
  Random random(4313);
  struct Case {
    int n, ierr;
    Numbers a;
  };
  const Case cases[] = {
      {1, -77, {-6.5}},
      {2, -77, {1.0, 4.0, 1.0}},
      {11, -77, Numbers(packed(11))},
      {20, -77, pack(20, [&](int i, int j) { return i == j ? random.uniform() : 0.0; })},
      {50, -77, random.vector(packed(50))},
      // The reflector of the last row only turns a sign, so that the NaN on the diagonal meets the fourth value alone:
      // the values before it stay unordered.
      {5, 4, {5, 0, 1, 0, 0, 7, 0, 0, 0, 2, 0, 0, 0, 4, zortest::nan}},
      // The reflector (2, 2) would exchange the first two elements of the first vector.
      {3, 2, {2, 0, 2, 2, 0, zortest::nan}},
  };
  for (const Case& c : cases) {
    for (const int32_t ord : {ascending, by_size}) {
      SCOPED_TRACE(testing::Message() << "order " << c.n);
      const Pairs expected = solve(c.n, c.a, ord, true);
      const Pairs actual = solve(c.n, c.a, ord);
      EXPECT_EQ(c.ierr == -77 ? 0 : 1, actual.result);
      EXPECT_EQ(c.ierr, actual.ierr);
      expect_same_bits(expected.d, actual.d);
      expect_same_bits(expected.v, actual.v);
      expect_same_bits(expected.rest, actual.rest);
    }
  }
}

TEST(eaxeig, below_one_is_taken_as_one_but_for_the_clearing) {
  for (const int n : {0, -2}) {
    Guarded<double> a(Numbers{2.5}, 0), d(1), e(1), v(Numbers{9, 9, 9, 9}, 0);
    int32_t ierr = -77;
    EXPECT_EQ(0, eaxeig(&n, &ascending, a.data(), d.data(), v.data(), e.data(), &ierr));
    EXPECT_EQ(-77, ierr);
    expect_same_bits({2.5, 0.0}, {d[0], e[0]});
    expect_same_bits(n == 0 ? Numbers{1, 9, 9, 9} : Numbers{1, 0, 0, 0}, v.values());
    EXPECT_TRUE(d.intact() && e.intact() && v.intact());
  }
}

}  // namespace
