// SPDX-License-Identifier: MIT
// eaxmvm against the product in its documented order, bit for bit.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <utility>

#include "matrix_kernels/sparse_matrices.h"
#include "team.h"

using namespace zortest;

namespace {

// Old contents of y that would show in every sum.
constexpr double poison = zortest::nan;

void expect_product(int mode, const LowerRows& a, int nvec, Random& random) {
  const std::size_t length = static_cast<std::size_t>(a.n) * static_cast<std::size_t>(nvec);
  const std::vector<double> x = random.vector(length);
  const std::vector<double> old(length, mode == 1 ? poison : -7.0);  // where no row is stored, mode 2 keeps it
  const auto offset = static_cast<std::size_t>(random.integer(0, 7));
  const Guarded<double> x_there(x, offset);
  Guarded<double> y(old, 1 + offset);
  call_eaxmvm(mode, a, nvec, x_there.data(), y.data());
  ASSERT_TRUE(y.intact());
  expect_same_bits(product_in_order(mode, a, nvec, x, old), y.values());
}

TEST(SparseProduct, KeepsItsOrderForEveryVectorCountAndTeam) {
  Random random(11);
  for (int threads = 1; threads <= 3; ++threads) {
    zortest::set_team(threads);
    for (int nvec = 0; nvec <= 13; ++nvec) {
      const int n = random.integer(60, 90);
      SCOPED_TRACE(testing::Message() << threads << " threads, " << nvec << " vectors, n = " << n);
      for (const int mode : {1, 2}) {
        for (const LowerRows& a : {scattered_rows(n, n, 14, 0, random), scattered_rows(n, n - 19, 14, 5, random),
                                   node_rows(25, 3, 4, 75, 0, random)}) {
          ASSERT_NO_FATAL_FAILURE(expect_product(mode, a, nvec, random));
        }
      }
    }
  }
}

TEST(SparseProduct, LeavesYAloneForOtherModesAndForNoVector) {
  Random random(4);
  const auto a = scattered_rows(30, 30, 5, 0, random);
  const auto x = random.vector(60);
  for (const auto& [mode, nvec] : {std::pair{0, 2}, {3, 2}, {-1, 2}, {1, 0}, {2, 0}, {1, -1}}) {
    Guarded<double> y(x, 0);
    call_eaxmvm(mode, a, nvec, x.data(), y.data());
    expect_same_bits(x, y.values());
  }
}

// Positions beyond 2^31. The vectors are reserved, of their pages only the stored rows' are ever touched; so y may
// begin inside x, past the rows that are read.
TEST(SparseProduct, PositionsPast31Bits) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer would touch gigabytes of its own for the reservation";
#endif
  constexpr std::size_t n = std::size_t{1} << 28;
  constexpr std::size_t nvec = 9;
  constexpr std::size_t rows = 40;
  const std::unique_ptr<void, decltype(&std::free)> store(std::calloc(n * nvec + rows, sizeof(double)), &std::free);
  if (store == nullptr) {
    GTEST_SKIP() << "the system does not reserve the vectors";
  }
  auto* const x = static_cast<double*>(store.get());
  double* const y = x + rows;
  Random random(8);
  auto a = scattered_rows(rows, rows, 6, 0, random);
  const auto few = random.vector(rows * nvec);
  const auto expected = product_in_order(2, a, nvec, few, few);
  for (std::size_t at = 0; at < few.size(); ++at) {
    x[at / rows * n + at % rows] = few[at];
  }
  a.n = n;
  call_eaxmvm(2, a, nvec, x, y);
  for (std::size_t at = 0; at < few.size(); ++at) {
    ASSERT_EQ(bits(y[at / rows * n + at % rows]), bits(expected[at]));
  }
}

}  // namespace
