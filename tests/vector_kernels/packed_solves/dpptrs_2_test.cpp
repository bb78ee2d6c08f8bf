// SPDX-License-Identifier: MIT
// dpptrs_2 and the single solve eacort, which must agree with it to the bit.
#include <gtest/gtest.h>

#include "ZORTAVMatrixUtilities.h"
#include "ZORTAVPackedSolves.h"
#include "support/numbers.h"
#include "vector_kernels/packed_solves/packed_oracle.h"

namespace zortest {
namespace {

// Columns of B |ldb| apart, the first one last for a negative ldb.
void expect_solutions(Random& random, std::size_t n, int32_t nrhs, int32_t ldb) {
  SCOPED_TRACE(testing::Message() << "n " << n << " nrhs " << nrhs << " ldb " << ldb);
  const std::vector<double> u = random_factor(random, n);
  const auto stride = static_cast<std::size_t>(std::abs(ldb));
  const auto columns = static_cast<std::size_t>(nrhs);
  Guarded<double> b(random.vector(stride * (columns - 1) + n), static_cast<std::size_t>(random.integer(0, 7)));
  double* const first = ldb < 0 ? b.data() + stride * (columns - 1) : b.data();
  std::vector<double> expected = b.values();
  for (std::size_t r = 0; r < columns; ++r) {
    const auto column = expected.begin() + static_cast<std::ptrdiff_t>(r * stride);
    const std::vector<double> rhs(column, column + static_cast<std::ptrdiff_t>(n));
    const std::vector<double> x = solved(u, rhs);
    std::copy(x.begin(), x.end(), column);
    if (r == 0) {
      std::vector<double> alone = rhs;
      const auto order = static_cast<int32_t>(n);
      eacort(nullptr, &order, u.data(), alone.data());
      expect_same_bits(x, alone);
    }
  }
  const auto order = static_cast<int32_t>(n);
  int32_t info = 7;
  dpptrs_2("U", &order, &nrhs, u.data(), first, &ldb, &info);
  expect_same_bits(expected, b.values());
  ASSERT_TRUE(b.intact());
  ASSERT_EQ(info, 7) << "a success does not write it";
}

TEST(PackedCholesky, KeepsTheOrderForEveryNumberOfRightHandSides) {
  Random random(31);
  for (int32_t nrhs = 1; nrhs <= 37; ++nrhs) {
    const auto n = static_cast<std::size_t>(random.integer(1, 60));
    expect_solutions(random, n, nrhs, static_cast<int32_t>(n) + random.integer(0, 5));
  }
  for (std::size_t n = 1; n <= 34; ++n) {
    expect_solutions(random, n, 11, static_cast<int32_t>(n) + 1);
    expect_solutions(random, n, 4, -static_cast<int32_t>(n));
  }
}

TEST(PackedCholesky, CrossesItsBlocksOfRows) {
  Random random(32);
  for (const std::size_t n : {255U, 256U, 257U, 300U, 519U}) {
    expect_solutions(random, n, 4, 520);
    expect_solutions(random, n, n < 300 ? 66 : 17, 520);
  }
}

TEST(PackedCholesky, SpecialCases) {
  const int32_t one = 1;
  const int32_t two = 2;
  const int32_t five = 5;
  const std::vector<double> u{2, 1, 4};
  for (const int32_t& nrhs : {one, two}) {
    std::vector<double> b{1, 2, 3, 4};
    int32_t info = 7;
    dpptrs_2("L", &two, &nrhs, u.data(), b.data(), &two, &info);
    EXPECT_EQ(info, 1);
    EXPECT_EQ(b, (std::vector<double>{1, 2, 3, 4}));
    for (const int32_t none : {0, -3}) {
      dpptrs_2("U", &none, &nrhs, nullptr, nullptr, &two, nullptr);
      dpptrs_2("U", &two, &none, nullptr, nullptr, &two, nullptr);
    }
  }
  double b = 12;
  eacort(nullptr, &one, u.data(), &b);
  EXPECT_EQ(b, 3);

  // Zeros are multiplied like any number, which only the sign of another zero tells.
  const std::vector<double> negative{1, -1, 1};
  for (const int32_t& nrhs : {one, five}) {
    std::vector<double> zeros{-0.0, 0, -0.0, 0, -0.0, 0, -0.0, 0, -0.0, 0};
    int32_t info = 0;
    dpptrs_2("U", &two, &nrhs, negative.data(), zeros.data(), &two, &info);
    EXPECT_TRUE(same_bits(0.0, zeros[0])) << nrhs;
  }

  // What is not a number stays in its right-hand side.
  int32_t info = 0;
  const std::vector<double> finite{1, 1, 1};
  std::vector<double> x{2, 2, nan, 0, 4, 4, inf, 0, 3, 3};
  dpptrs_2("U", &two, &five, finite.data(), x.data(), &two, &info);
  EXPECT_EQ(x[0], 2);
  EXPECT_NE(x[2], x[2]);
  EXPECT_EQ(x[4], 4);
  EXPECT_EQ(x[8], 3);
}

}  // namespace
}  // namespace zortest
