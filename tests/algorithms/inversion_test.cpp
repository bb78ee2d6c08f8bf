// SPDX-License-Identifier: MIT
// eaxinv, eaxinvs, eaxrmc3.
#include <gtest/gtest.h>

#include <cmath>

#include "ZORTAVInversion.h"
#include "ZORTAVMatrixUtilities.h"
#include "support/numbers.h"

namespace zortest {
namespace {

// A matrix of order n in columns of lda elements, indices from 1.
struct Matrix {
  int n;
  int lda;
  std::vector<double> a;

  Matrix(int order, int leading) : n(order), lda(leading), a(static_cast<std::size_t>(order * leading), 99) {}
  double& operator()(int i, int j) { return a[static_cast<std::size_t>(i - 1 + (j - 1) * lda)]; }
  double operator()(int i, int j) const { return a[static_cast<std::size_t>(i - 1 + (j - 1) * lda)]; }
};

Matrix random_matrix(Random& random, int n, int lda, bool symmetric) {
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
void invert_general(Matrix& a) {
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
      const double t = a(k, j);
      for (int i = 1; i <= n && j != k; ++i) {
        const double old = i == k ? t * r : a(i, j);
        a(i, j) = t == 0 ? old : old + t * a(i, k);
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

bool invert_symmetric(Matrix& a, bool tested) {
  const int n = a.n;
  for (int k = 1; k <= n; ++k) {
    if (tested && std::fabs(a(k, k)) <= 1e-8) {
      return false;
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

int32_t invert(int32_t mode, Guarded<double>& a, const Matrix& shape, int32_t ierr = 7) {
  const int32_t lda = shape.lda;
  std::vector<int32_t> ipiv(static_cast<std::size_t>(std::max(shape.n, 0)));
  eaxinv(&mode, &lda, &shape.n, mode == 1 ? ipiv.data() : nullptr, mode == 1 || mode == 2 ? nullptr : &ierr, a.data());
  EXPECT_TRUE(a.intact());
  return ierr;
}

double identity_error(const Matrix& a, const std::vector<double>& inverse, int ldr) {
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

TEST(Inversion, KeepsTheStatedSteps) {
  Random random(44);
  for (const int n : {1, 2, 3, 4, 5, 7, 8, 9, 16, 17, 31, 33, 64, 65}) {
    for (const int32_t mode : {1, 2, 3}) {
      const Matrix a = random_matrix(random, n, n + random.integer(0, 3), mode != 1);
      Guarded<double> x(a.a, static_cast<std::size_t>(random.integer(0, 7)));
      EXPECT_EQ(invert(mode, x, a), mode == 3 ? 0 : 7);
      Matrix expected = a;
      if (mode == 1) {
        invert_general(expected);
      } else {
        invert_symmetric(expected, false);
      }
      SCOPED_TRACE(testing::Message() << "n " << n << " mode " << mode);
      expect_same_bits(expected.a, x.values());
      EXPECT_LT(identity_error(a, x.values(), a.lda), mode == 1 ? 1e-9 : 1e-13);
    }
  }
}

TEST(Inversion, TakesTheLastOfTheLargestAsPivot) {
  Random random(45);
  for (int trial = 0; trial < 200; ++trial) {
    Matrix a = random_matrix(random, 6, 6, false);
    for (double& x : a.a) {
      x = random.integer(-2, 2);  // many ties, zeros and singular matrices
    }
    Guarded<double> x(a.a, 0);
    invert(1, x, a);
    invert_general(a);
    expect_same_bits(a.a, x.values());
  }
  Guarded<double> swap(std::vector<double>{0, 1, 1, 0}, 0);
  invert(1, swap, Matrix(2, 2));
  EXPECT_EQ(swap.values(), (std::vector<double>{0, 1, 1, 0}));
}

TEST(Inversion, RefusesSmallPivots) {
  Random random(46);
  const int n = 12;
  for (int k = 1; k <= n; ++k) {
    // Equation k has nothing but a small diagonal.
    for (const double rest : {1e-9, -1e-9, 1e-8}) {
      Matrix a = random_matrix(random, n, n + 1, true);
      for (int i = 1; i <= n; ++i) {
        a(k, i) = a(i, k) = 0;
      }
      a(k, k) = rest;
      Guarded<double> x(a.a, 1);
      ASSERT_EQ(invert(0, x, a), 1);
      const Matrix before = a;
      ASSERT_FALSE(invert_symmetric(a, true));
      expect_same_bits(a.a, x.values());
      ASSERT_EQ(k == 1, a.a == before.a);
    }
  }
  Guarded<double> accepted(std::vector<double>{std::nextafter(1e-8, 1.0)}, 0);
  EXPECT_EQ(invert(-1, accepted, Matrix(1, 1)), 0);
  Guarded<double> not_a_number(std::vector<double>{nan}, 0);
  EXPECT_EQ(invert(3, not_a_number, Matrix(1, 1)), 0);
  Guarded<double> zero(std::vector<double>{0}, 0);
  invert(1, zero, Matrix(1, 1));
  EXPECT_EQ(zero[0], inf);
  for (const int none : {0, -2}) {
    Guarded<double> untouched(std::vector<double>{5}, 0);
    Matrix empty(0, 1);
    empty.n = none;
    EXPECT_EQ(invert(1, untouched, empty), 7);
    EXPECT_EQ(invert(2, untouched, empty), 7);
    EXPECT_EQ(invert(3, untouched, empty), 0);
    EXPECT_EQ(untouched[0], 5);
  }
}

// The arrays of eaxrmc3, which calls eaxinvs.
struct Reduction {
  int32_t n;
  int32_t m;
  std::vector<double> a;
  std::vector<double> d = filled(n);
  std::vector<double> v = filled(n * n);
  std::vector<double> w = filled(n * n);
  Guarded<double> r{filled(n * n), 1};
  Guarded<double> t{filled(n * m), 1};
  Guarded<double> s{filled(m * m), 1};
  int32_t ierr = 7;

  Reduction(const Matrix& matrix, int columns) : n(matrix.n), m(columns) {
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= i; ++j) {
        a.push_back(matrix(i, j));
      }
    }
  }
  static std::vector<double> filled(int elements) {
    return std::vector<double>(static_cast<std::size_t>(elements), 99);
  }
  int32_t run(const std::vector<double>& b, int32_t ldb) {
    const int32_t result =
        eaxrmc3(&n, &m, a.data(), b.data(), &ldb, d.data(), v.data(), w.data(), r.data(), t.data(), s.data(), &ierr);
    EXPECT_EQ(result, ierr == 0 ? 0 : 1);
    EXPECT_TRUE(r.intact() && t.intact() && s.intact());
    return ierr;
  }
};

TEST(SpectralInverse, InvertsIndefiniteMatrices) {
  Random random(47);
  const int m = 7;
  for (const int n : {1, 2, 3, 10, 33, 60}) {
    Matrix a = random_matrix(random, n, n, true);
    for (int i = 1; i <= n; i += 2) {
      a(i, i) = -a(i, i);
    }
    const int ldb = n + 3;
    const std::vector<double> b = random.vector(static_cast<std::size_t>(ldb * m));
    Reduction x(a, m);
    ASSERT_EQ(x.run(b, ldb), 0);
    EXPECT_LT(identity_error(a, x.r.values(), n), 1e-12) << n;
    for (std::size_t i = 1; i < x.d.size(); ++i) {
      ASSERT_GE(std::fabs(x.d[i - 1]), std::fabs(x.d[i])) << "eigenvalues, not their reciprocals";
    }
    const int32_t one = 1;
    for (int j = 0; j < m; ++j) {
      const double* const tj = x.t.data() + j * n;
      for (int i = 1; i <= n; ++i) {
        double residual = -b[static_cast<std::size_t>(i - 1 + j * ldb)];
        for (int k = 1; k <= n; ++k) {
          residual += a(i, k) * tj[k - 1];
        }
        ASSERT_LT(std::fabs(residual), 1e-12);
      }
      for (int i = 0; i <= j; ++i) {
        const double expected = eaxscl(&n, b.data() + i * ldb, &one, tj, &one);
        ASSERT_TRUE(same_bits(expected, x.s[static_cast<std::size_t>(i + j * m)]));
        ASSERT_TRUE(same_bits(expected, x.s[static_cast<std::size_t>(j + i * m)]));
      }
    }
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
  const std::vector<double> b(12, 1.0);
  for (const Matrix& a : {singular, almost, unsolvable}) {
    Reduction x(a, 2);
    const int32_t ierr = x.run(b, 6);
    EXPECT_TRUE(a(4, 3) != a(4, 3) ? ierr > 0 : ierr == -1) << ierr;
    for (const Guarded<double>& result : {x.r, x.t, x.s}) {
      EXPECT_EQ(result.values(), Reduction::filled(static_cast<int>(result.size())));
    }
  }
  almost(4, 4) = std::nextafter(6 * 0x1p-52, 1.0);
  EXPECT_EQ(Reduction(almost, 2).run(b, 6), 0);

  Reduction empty(Matrix(0, 1), 2);
  EXPECT_EQ(empty.run(b, 1), 0);
  EXPECT_EQ(empty.s.values(), std::vector<double>(4, 0.0));
}

}  // namespace
}  // namespace zortest
