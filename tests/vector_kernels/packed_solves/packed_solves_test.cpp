// SPDX-License-Identifier: MIT
// e_dtpsv, dpptrs_2, eacort: solutions known exactly, and what is not read or not written.
#include <gtest/gtest.h>

#include "ZORTAVMatrixUtilities.h"
#include "ZORTAVPackedSolves.h"
#include "support/by_address.h"
#include "support/numbers.h"
#include "vector_kernels/packed_solves/packed_oracle.h"

namespace zortest {
namespace {

TEST(PackedTriangularSolve, SmallTriangles) {
  const std::vector<double> by_columns{2, 1, 4, 3, 5, 8};  // (2 1 3; 0 4 5; 0 0 8)
  const std::vector<double> transposed{2, 1, 3, 4, 5, 8};
  for (const char* uplo : {"U", "L"}) {
    for (const char* trans : {"N", "T"}) {
      const bool upper = *uplo == 'U';
      std::vector<double> x =
          upper == (*trans == 'N') ? std::vector<double>{13, 23, 24} : std::vector<double>{2, 9, 37};
      by_address(e_dtpsv, *uplo, *trans, 'N', 3, upper ? by_columns : transposed, x, 1);
      EXPECT_EQ(x, (std::vector<double>{1, 2, 3}));
      // A diagonal of ones is all that there is: no place of ap is read.
      by_address(e_dtpsv, *uplo, *trans, 'U', 1, nullptr, x, 1);
      EXPECT_EQ(x[0], 1);
    }
  }
  by_address(e_dtpsv, 'U', 'N', 'N', INT32_MIN, nullptr, nullptr, 1);
}

// Infinities in the column of a zero spread only in the transposed solves, whichever columns are taken together.
TEST(PackedTriangularSolve, SkipsTheColumnsOfZeros) {
  Random random(25);
  for (const int n : {7, 8, 40}) {
    for (int shape = 0; shape < 8; ++shape) {
      Triangle t = random_triangle(random, shape, n);
      std::vector<double> b = random.vector(static_cast<std::size_t>(n));
      for (int j = 1; j <= n; ++j) {
        if (t.upper ? j > n / 2 : j <= n / 2) {  // solved first
          b[static_cast<std::size_t>(j - 1)] = random.integer(0, 1) == 0 ? 0.0 : -0.0;
          t.ap[position(t.upper, n, t.upper ? 1 : n, j) - 1] = inf;
        }
      }
      const std::vector<double> solution = solved(t, b);
      for (const int32_t incx : {1, 2}) {
        std::vector<double> x(2 * b.size());
        std::vector<double> expected(x.size());
        for (std::size_t i = 0; i < b.size(); ++i) {
          x[i * static_cast<std::size_t>(incx)] = b[i];
          expected[i * static_cast<std::size_t>(incx)] = solution[i];
        }
        e_dtpsv(t.upper ? "U" : "L", t.transposed ? "T" : "N", t.unit ? "U" : "N", &n, t.ap.data(), x.data(), &incx);
        SCOPED_TRACE(testing::Message() << "n " << n << " shape " << shape << " incx " << incx);
        expect_same_bits(expected, x);
      }
    }
  }
}

TEST(PackedCholesky, SolvesAndReadsNothingWhereNothingIsToDo) {
  const std::vector<double> u{2, 1, 4};  // A = (4 2; 2 17)
  for (const int32_t nrhs : {1, 2}) {
    std::vector<double> b{10, 39, 4, 18};
    int32_t info = 7;
    by_address(dpptrs_2, 'U', 2, nrhs, u, b, 2, info);
    EXPECT_EQ(b,
              nrhs == 1 ? (std::vector<double>{1.4375, 2.125, 4, 18}) : (std::vector<double>{1.4375, 2.125, 0.5, 1}));
    EXPECT_EQ(info, 7);
    for (const int32_t none : {0, -3}) {
      by_address(dpptrs_2, 'U', none, nrhs, nullptr, nullptr, 2, nullptr);
      by_address(dpptrs_2, 'U', 2, none, nullptr, nullptr, 2, nullptr);
    }
  }
  double b = 12;
  by_address(eacort, nullptr, 1, u, b);
  EXPECT_EQ(b, 3);

  // Zeros are multiplied like any number, which only the sign of another zero tells.
  const std::vector<double> negative{1, -1, 1};
  for (const int32_t nrhs : {1, 5}) {
    std::vector<double> zeros{-0.0, 0, -0.0, 0, -0.0, 0, -0.0, 0, -0.0, 0};
    by_address(dpptrs_2, 'U', 2, nrhs, negative, zeros, 2, nullptr);
    EXPECT_TRUE(same_bits(0.0, zeros[0])) << nrhs;
  }
}

// Columns of B |ldb| apart, the first one last for a negative ldb.
TEST(PackedCholesky, ManyRightHandSidesForwardAndBackward) {
  Random random(31);
  for (const int32_t n : {1, 7, 34, 255, 519}) {
    for (const int32_t nrhs : {4, 37, 66}) {
      for (const int32_t ldb : {n + 1, -n}) {
        SCOPED_TRACE(testing::Message() << "n " << n << " nrhs " << nrhs << " ldb " << ldb);
        const auto order = static_cast<std::size_t>(n);
        const auto stride = static_cast<std::size_t>(std::abs(ldb));
        const std::size_t last = stride * static_cast<std::size_t>(nrhs - 1);
        const std::vector<double> u = random_factor(random, order);
        Guarded<double> b(random.vector(last + order), 1);
        std::vector<double> expected = b.values();
        for (std::size_t at = 0; at <= last; at += stride) {
          const double* const column = expected.data() + at;
          const std::vector<double> x = solved(u, {column, column + n});
          std::copy(x.begin(), x.end(), expected.data() + at);
        }
        int32_t info = 7;
        dpptrs_2("U", &n, &nrhs, u.data(), ldb < 0 ? b.data() + last : b.data(), &ldb, &info);
        expect_same_bits(expected, b.values());
        EXPECT_TRUE(b.intact());
      }
    }
  }
}

}  // namespace
}  // namespace zortest
