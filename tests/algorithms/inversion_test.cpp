// SPDX-License-Identifier: MIT
// eaxinvs, eaxrmc3.
#include <gtest/gtest.h>

#include <cmath>

#include "ZORTAVInversion.h"
#include "ZORTAVMatrixUtilities.h"
#include "algorithms/inversion_oracle.h"
#include "support/numbers.h"

namespace zortest {
namespace {

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
