// SPDX-License-Identifier: MIT
// The whole eigen-solution: small cases by hand, known spectra, residual and orthogonality, failure.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "ZORTAVEigenSolver.h"
#include "support/numbers.h"

namespace {

using zortest::expect_same_bits;
using zortest::Guarded;
using zortest::Random;
using Numbers = std::vector<double>;

constexpr double eps = std::numeric_limits<double>::epsilon();
constexpr int32_t ascending = 1;
constexpr int32_t by_size = 2;
constexpr double pi = 3.14159265358979323846;

std::size_t size(int n) {
  return static_cast<std::size_t>(n);
}
std::size_t at(int i, int j) {
  return i >= j ? size(i) * size(i + 1) / 2 + size(j) : at(j, i);
}

template <class Element>
Numbers pack(int n, Element element) {
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
  int32_t ierr;
  Numbers d;
  Numbers v;
};

Pairs solve(int n, const Numbers& matrix, int32_t ord, std::size_t offset = 0) {
  Guarded<double> a(matrix, offset);
  Guarded<double> d(size(n), offset);
  Guarded<double> v(size(n) * size(n), offset);
  Guarded<double> e(size(n), offset);
  int32_t ierr = -77;
  const int32_t result = eaxeig(&n, &ord, a.data(), d.data(), v.data(), e.data(), &ierr);
  EXPECT_TRUE(a.intact() && d.intact() && v.intact() && e.intact());
  return {result, ierr, d.values(), v.values()};
}

void expect_decomposition(int n, const Numbers& a, const Pairs& pairs) {
  ASSERT_EQ(0, pairs.result);
  EXPECT_EQ(-77, pairs.ierr);
  const double bound = 50.0 * n * eps;
  double norm = 0.0;
  double trace = 0.0;
  double sum = 0.0;
  for (int i = 0; i < n; ++i) {
    double row = 0.0;
    for (int j = 0; j < n; ++j) {
      row += std::abs(a[at(i, j)]);
    }
    norm = std::max(norm, row);
    trace += a[at(i, i)];
    sum += pairs.d[size(i)];
  }
  EXPECT_NEAR(trace, sum, bound * norm);
  const auto column = [&](int j) { return pairs.v.data() + size(j) * size(n); };
  for (int j = 0; j < n; ++j) {
    double residual = 0.0;
    for (int i = 0; i < n; ++i) {
      double r = -pairs.d[size(j)] * column(j)[i];
      for (int k = 0; k < n; ++k) {
        r += a[at(i, k)] * column(j)[k];
      }
      residual = std::max(residual, std::abs(r));
    }
    ASSERT_LE(residual, bound * norm) << "pair " << j;
    for (int i = 0; i <= j; ++i) {
      double product = i == j ? -1.0 : 0.0;
      for (int k = 0; k < n; ++k) {
        product += column(i)[k] * column(j)[k];
      }
      ASSERT_LE(std::abs(product), bound) << "columns " << i << " and " << j;
    }
  }
}

void expect_spectrum(Numbers expected, const Pairs& pairs, double tolerance) {
  std::sort(expected.begin(), expected.end());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_NEAR(expected[i], pairs.d[i], tolerance) << "eigenvalue " << i;
  }
}

TEST(eaxeig, random_matrices) {
  Random random(4311);
  std::vector<int> orders{63, 64, 65, 127, 129, 200};
  for (int n = 1; n <= 40; ++n) {
    orders.push_back(n);
  }
  for (const int n : orders) {
    SCOPED_TRACE(n);
    const Numbers a = random.vector(at(n, 0));
    const Pairs up = solve(n, a, ascending, size(n % 3));
    expect_decomposition(n, a, up);
    EXPECT_TRUE(std::is_sorted(up.d.begin(), up.d.end()));
    const Pairs down = solve(n, a, by_size);
    ASSERT_EQ(0, down.result);
    EXPECT_TRUE(
        std::is_sorted(down.d.begin(), down.d.end(), [](double x, double y) { return std::abs(x) > std::abs(y); }));
  }
}

TEST(eaxeig, known_spectra) {
  for (const int n : {3, 10, 33, 100}) {
    SCOPED_TRACE(n);
    Numbers spectrum;
    for (int k = 1; k <= n; ++k) {
      spectrum.push_back(2.0 - 2.0 * std::cos(k * pi / (n + 1)));
    }
    const Numbers a = pack(n, [](int i, int j) { return i == j ? 2.0 : (i - j == 1 ? -1.0 : 0.0); });
    const Pairs pairs = solve(n, a, ascending);
    expect_decomposition(n, a, pairs);
    expect_spectrum(spectrum, pairs, 10.0 * n * eps);
  }
}

TEST(eaxeig, multiple_eigenvalues) {
  Random random(4312);
  for (const int n : {4, 16, 31, 90}) {
    SCOPED_TRACE(n);
    // A reflector: -1 once, 1 otherwise. A matrix of ones: n once, 0 otherwise.
    const Numbers w = random.vector(size(n));
    double square = 0.0;
    for (const double x : w) {
      square += x * x;
    }
    const Numbers reflector =
        pack(n, [&](int i, int j) { return (i == j ? 1.0 : 0.0) - 2.0 * w[size(i)] * w[size(j)] / square; });
    Numbers spectrum(size(n), 1.0);
    spectrum[0] = -1.0;
    Pairs pairs = solve(n, reflector, ascending);
    expect_decomposition(n, reflector, pairs);
    expect_spectrum(spectrum, pairs, 20.0 * n * eps);

    const Numbers ones(at(n, 0), 1.0);
    spectrum.assign(size(n), 0.0);
    spectrum[0] = n;
    pairs = solve(n, ones, ascending);
    expect_decomposition(n, ones, pairs);
    expect_spectrum(spectrum, pairs, 20.0 * n * n * eps);
  }
}

TEST(eaxeig, graded_and_decoupled_matrices) {
  Random random(4313);
  const int n = 45;
  for (const double factor : {0.5, 2.0, 0.0}) {
    SCOPED_TRACE(factor);
    // Factor 0: three blocks without any coupling.
    const Numbers a = pack(n, [&](int i, int j) {
      const double x = random.uniform();
      return factor == 0.0 ? (i / 15 == j / 15 ? x : 0.0) : x * std::pow(factor, i + j);
    });
    expect_decomposition(n, a, solve(n, a, ascending));
  }
}

TEST(eaxeig, a_diagonal_matrix_is_only_ordered) {
  for (const int n : {1, 2, 3, 8, 20}) {
    SCOPED_TRACE(n);
    Random random(4314);
    const Numbers diagonal = random.vector(size(n));
    for (const int32_t ord : {ascending, by_size}) {
      const Pairs pairs = solve(n, pack(n, [&](int i, int j) { return i == j ? diagonal[size(i)] : 0.0; }), ord);
      ASSERT_EQ(0, pairs.result);
      for (int j = 0; j < n; ++j) {
        int ones = 0;
        for (int i = 0; i < n; ++i) {
          const double x = pairs.v[size(i) + size(j) * size(n)];
          if (x == 1.0) {
            ++ones;
            EXPECT_EQ(diagonal[size(i)], pairs.d[size(j)]);
          } else {
            EXPECT_EQ(0.0, x);
          }
        }
        EXPECT_EQ(1, ones);
      }
    }
  }
}

TEST(eaxeig, the_zero_matrix_has_the_identity) {
  const int n = 11;
  const Pairs pairs = solve(n, Numbers(at(n, 0)), by_size);
  EXPECT_EQ(0, pairs.result);
  expect_same_bits(Numbers(size(n)), pairs.d);
  expect_same_bits(
      [&] {
        Numbers identity(size(n) * size(n));
        for (int i = 0; i < n; ++i) {
          identity[size(i) * size(n + 1)] = 1.0;
        }
        return identity;
      }(),
      pairs.v);
}

TEST(eaxeig, orders_two_and_one) {
  // (1, 4; 4, 1): -3 and 5.
  const Numbers a{1.0, 4.0, 1.0};
  Pairs pairs = solve(2, a, ascending);
  expect_decomposition(2, a, pairs);
  expect_spectrum({-3.0, 5.0}, pairs, 8 * eps);
  pairs = solve(2, a, by_size);
  EXPECT_NEAR(5.0, pairs.d[0], 8 * eps);
  EXPECT_NEAR(-3.0, pairs.d[1], 8 * eps);

  pairs = solve(1, {-6.5}, ascending);
  EXPECT_EQ(0, pairs.result);
  EXPECT_EQ(-6.5, pairs.d[0]);
  EXPECT_EQ(1.0, pairs.v[0]);
}

TEST(eaxeig, below_one_is_taken_as_one_but_for_the_clearing) {
  for (const int n : {0, -2}) {
    const int32_t ord = ascending;
    Numbers a{2.5};
    Guarded<double> d(1);
    Guarded<double> e(1);
    Guarded<double> v(Numbers{9, 9, 9, 9}, 0);
    int32_t ierr = -77;
    EXPECT_EQ(0, eaxeig(&n, &ord, a.data(), d.data(), v.data(), e.data(), &ierr));
    EXPECT_EQ(2.5, d[0]);
    EXPECT_EQ(0.0, e[0]);
    expect_same_bits(n == 0 ? Numbers{1, 9, 9, 9} : Numbers{1, 0, 0, 0}, v.values());
    EXPECT_EQ(-77, ierr);
    EXPECT_TRUE(d.intact() && e.intact() && v.intact());
  }
}

TEST(eaxeig, a_failure_leaves_the_values_unordered) {
  // The reflector of the last row only turns a sign, so that the NaN on the diagonal meets the fourth value alone.
  const Numbers a{5, 0, 1, 0, 0, 7, 0, 0, 0, 2, 0, 0, 0, 4, zortest::nan};
  for (const int32_t ord : {ascending, by_size}) {
    const Pairs pairs = solve(5, a, ord);
    EXPECT_EQ(1, pairs.result);
    EXPECT_EQ(4, pairs.ierr);
    expect_same_bits({5.0, 1.0, 7.0}, Numbers(pairs.d.begin(), pairs.d.begin() + 3));
  }
}

TEST(eaxeig, a_failure_leaves_the_vectors_untransformed) {
  // The reflector (2, 2) would exchange the first two elements of the first vector.
  const Pairs pairs = solve(3, {2, 0, 2, 2, 0, zortest::nan}, ascending);
  EXPECT_EQ(1, pairs.result);
  EXPECT_EQ(2, pairs.ierr);
  EXPECT_EQ(2.0, pairs.d[0]);
  expect_same_bits({1.0, 0.0, 0.0}, Numbers(pairs.v.begin(), pairs.v.begin() + 3));
}

}  // namespace
