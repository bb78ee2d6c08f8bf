// SPDX-License-Identifier: MIT
// eaxinvs, eaxrmc3.
#include <gtest/gtest.h>

#include <cmath>

#include "ZORTAVEigenSolver.h"
#include "ZORTAVInversion.h"
#include "ZORTAVMatrixUtilities.h"
#include "algorithms/inversion_oracle.h"
#include "support/numbers.h"

namespace zortest {
namespace {

// The arrays of eaxinvs and eaxrmc3, guarded.
struct Spectral {
  int32_t n;
  int32_t m;
  Guarded<double> a;
  Guarded<double> d;
  Guarded<double> v;
  Guarded<double> w;
  Guarded<double> r;
  Guarded<double> t;
  Guarded<double> s;
  int32_t ierr = 7;

  Spectral(const Matrix& matrix, int columns)
      : n(matrix.n),
        m(columns),
        a(packed(matrix), 1),
        d(size(n), 1),
        v(size(n * n), 1),
        w(size(n * n), 1),
        r(size(n * n), 1),
        t(size(n * m), 1),
        s(size(m * m), 1) {}

  static std::size_t size(int elements) { return static_cast<std::size_t>(elements); }
  static std::vector<double> packed(const Matrix& a) {
    std::vector<double> p;
    for (int i = 1; i <= a.n; ++i) {
      for (int j = 1; j <= i; ++j) {
        p.push_back(a(i, j));
      }
    }
    return p;
  }
  int32_t invert() { return eaxinvs(&n, a.data(), d.data(), v.data(), w.data(), r.data(), &ierr); }
  int32_t reduce(const std::vector<double>& b, int32_t ldb) {
    return eaxrmc3(&n, &m, a.data(), b.data(), &ldb, d.data(), v.data(), w.data(), r.data(), t.data(), s.data(), &ierr);
  }
  bool intact() const {
    return a.intact() && d.intact() && v.intact() && w.intact() && r.intact() && t.intact() && s.intact();
  }
};

TEST(SpectralInverse, InvertsIndefiniteMatrices) {
  Random random(47);
  for (const int n : {1, 2, 3, 10, 33, 60}) {
    Matrix a = random_matrix(random, n, n, true);
    for (int i = 1; i <= n; i += 2) {
      a(i, i) = -a(i, i);
    }
    Spectral x(a, 0);
    ASSERT_EQ(x.invert(), 0);
    EXPECT_EQ(x.ierr, 0);
    EXPECT_LT(identity_error(a, x.r.values(), n), 1e-12) << n;
    for (std::size_t i = 1; i < x.d.size(); ++i) {
      ASSERT_GE(std::fabs(x.d[i - 1]), std::fabs(x.d[i])) << "eigenvalues, not their reciprocals";
    }
    EXPECT_TRUE(x.intact());
  }
}

TEST(SpectralInverse, LeavesTheResultsAloneWhenThereIsNoInverse) {
  Random random(48);
  Matrix singular(6, 6);
  Matrix almost(6, 6);
  Matrix unsolvable = random_matrix(random, 6, 6, true);
  for (int i = 1; i <= 6; ++i) {
    for (int j = 1; j <= 6; ++j) {
      singular(i, j) = i * j;
      almost(i, j) = i == j ? (i == 4 ? 6 * 0x1p-52 : 1) : 0;  // its limit exactly
    }
  }
  unsolvable(4, 3) = nan;
  for (const Matrix& a : {singular, almost, unsolvable}) {
    Spectral x(a, 2);
    const std::vector<double> r = x.r.values();
    const std::vector<double> t = x.t.values();
    const std::vector<double> s = x.s.values();
    EXPECT_EQ(x.reduce(std::vector<double>(12, 1.0), 6), 1);
    if (a(4, 3) != a(4, 3)) {
      EXPECT_GT(x.ierr, 0);
    } else {
      EXPECT_EQ(x.ierr, -1);
    }
    EXPECT_EQ(x.r.values(), r);
    EXPECT_EQ(x.t.values(), t);
    EXPECT_EQ(x.s.values(), s);
    EXPECT_TRUE(x.intact());
  }
  almost(4, 4) = std::nextafter(6 * 0x1p-52, 1.0);
  Spectral enough(almost, 0);
  EXPECT_EQ(enough.invert(), 0);
}

TEST(SpectralInverse, ReducesToSymmetricMatrices) {
  Random random(49);
  const int n = 21;
  const int m = 7;
  const int ldb = 24;
  const Matrix a = random_matrix(random, n, n, true);
  const std::vector<double> b = random.vector(static_cast<std::size_t>(ldb * m));
  Spectral x(a, m);
  ASSERT_EQ(x.reduce(b, ldb), 0);
  EXPECT_EQ(x.ierr, 0);
  EXPECT_TRUE(x.intact());
  const int32_t order = n;
  const int32_t one = 1;
  for (int j = 0; j < m; ++j) {
    const double* const tj = x.t.data() + j * n;
    for (int i = 1; i <= n; ++i) {
      double residual = -b[static_cast<std::size_t>(i - 1 + j * ldb)];
      for (int k = 1; k <= n; ++k) {
        residual += a(i, k) * tj[k - 1];
      }
      ASSERT_LT(std::fabs(residual), 1e-13);
    }
    for (int i = 0; i <= j; ++i) {
      const double expected = eaxscl(&order, b.data() + i * ldb, &one, tj, &one);
      ASSERT_TRUE(same_bits(expected, x.s[static_cast<std::size_t>(i + j * m)]));
      ASSERT_TRUE(same_bits(expected, x.s[static_cast<std::size_t>(j + i * m)]));
    }
  }
}

TEST(SpectralInverse, EmptyMatrices) {
  const int32_t two = 2;
  Random random(50);
  double s[4] = {5, 5, 5, 5};
  for (const int32_t none : {0, -1}) {
    int32_t ierr = 7;
    EXPECT_EQ(eaxinvs(&none, nullptr, nullptr, nullptr, nullptr, nullptr, &ierr), 0);
    EXPECT_EQ(ierr, 0);
    EXPECT_EQ(eaxrmc3(&none, &two, nullptr, nullptr, &two, nullptr, nullptr, nullptr, nullptr, nullptr, s, &ierr), 0);
    EXPECT_EQ(s[0] + s[1] + s[2] + s[3], 0);
    Spectral x(random_matrix(random, 3, 3, true), 0);
    x.m = none;
    EXPECT_EQ(x.reduce({}, 3), 0);
    EXPECT_TRUE(x.intact());
  }
}

}  // namespace
}  // namespace zortest
