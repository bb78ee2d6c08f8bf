// SPDX-License-Identifier: MIT
// The order of eagemm's tests in a process whose threading mode is not 2: what is delegated, what is checked, what
// stops.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>

#include "ZORMathematics.h"
#include "matrix_kernels/product_oracle.h"
#include "test_system.h"

namespace {

using zortest::nan;

// A 2 × 2 product whose arguments a test may spoil.
struct Call {
  char transa = 'N', transb = 'N';
  int32_t m = 2, n = 2, k = 2, lda = 2, ldb = 2, ldc = 2;
  double alpha = 1.0, beta = 0.0;
  std::array<double, 16> a{1, 2, 3, 4}, b{5, 6, 7, 8}, c{1, 10, 100, 1000};

  std::array<double, 16> run() {
    eagemm(&transa, &transb, &m, &n, &k, &alpha, a.data(), &lda, b.data(), &ldb, &beta, c.data(), &ldc);
    return c;
  }
  void run_adapter() {
    EXPECT_EQ(0, prdgemm(&transa, &transb, &m, &n, &k, &alpha, a.data(), &lda, b.data(), &ldb, &beta, c.data(), &ldc));
  }
};

TEST(ProductRoutes, TheDelegatedRouteChecksNothing) {
  const auto overlapping = Call{.lda = 1}.run();  // columns of A: (1, 2), (2, 3)
  EXPECT_EQ(overlapping[0], 1 * 5 + 2 * 6);
  EXPECT_EQ(overlapping[1], 2 * 5 + 3 * 6);
  EXPECT_EQ((Call{.m = -1, .n = -1, .ldc = -1, .alpha = -1.0}.run()), Call().c);
  EXPECT_EQ((Call{.k = -3, .c = {nan, nan, nan, nan}}.run()), Call{.c = {}}.c);
}

TEST(ProductRoutes, QuickReturnsComeBeforeTheChecks) {
  for (Call x : {Call{.transa = '?', .m = 0, .k = -3}, Call{.transa = '?', .n = 0, .k = -3},
                 Call{.transb = '?', .alpha = 0.0, .beta = 1.0}, Call{.transb = '?', .k = 0, .beta = 1.0}}) {
    EXPECT_EQ(x.run(), Call().c);
  }
}

TEST(ProductRoutes, ABadArgumentStopsTheProcess) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  for (Call x : {Call{.transa = 'X'}, Call{.transb = '\0'}, Call{.m = -1}, Call{.n = -1}, Call{.k = -1}, Call{.lda = 1},
                 Call{.ldb = 1}, Call{.ldc = 1},
                 // A leading dimension is at least 1, whatever k is.
                 Call{.transa = 'T', .k = 0, .lda = 0}, Call{.k = 0, .ldb = 0},
                 // A, then B is 3 × 2, its leading dimension 2.
                 Call{.transa = 'c', .k = 3, .ldb = 3}, Call{.transb = 'T', .n = 3}}) {
    x.beta = 0.5;  // not to be delegated
    EXPECT_EXIT(x.run(), testing::ExitedWithCode(1), "^DGEMM FATAL ERROR\n$");
  }
}

// The traps that are left of the divide-by-zero trap, run in a child.
template <class Product>
[[noreturn]] void exit_with_traps_after(Product product) {
  zortest::trap_divisions_by_zero();
  product();
  using zortest::Traps;
  std::exit(zortest::traps() == Traps::division_by_zero ? 1 : zortest::traps() == Traps::none ? 0 : 2);
}

TEST(ProductRoutes, OnlyTheDelegatedRouteOfEagemmClearsTheTraps) {
  const auto traps_left = testing::ExitedWithCode(1);
  const auto traps_cleared = testing::ExitedWithCode(0);
  // Without rows it is delegated all the same.
  for (Call x : {Call{}, Call{.alpha = -1.0}, Call{.m = 0}}) {
    EXPECT_EXIT(exit_with_traps_after([&] { x.run(); }), traps_cleared, "");
  }
  for (Call x : {Call{.alpha = 2.0}, Call{.m = 0, .alpha = 2.0}}) {
    EXPECT_EXIT(exit_with_traps_after([&] { x.run(); }), traps_left, "");
    EXPECT_EXIT(exit_with_traps_after([&] { x.run_adapter(); }), traps_left, "");
  }
}

// C - A·B by negating before and after leaves -0 where the other routes leave 0.
TEST(ProductRoutes, NegationShowsInTheSignOfZero) {
  const double by_negation = Call{.alpha = -1.0, .beta = 1.0, .c = {23, 34, 31, 46}}.run()[0];
  EXPECT_TRUE(by_negation == 0.0 && std::signbit(by_negation));
  const double by_product =
      Call{.transa = 'T', .alpha = -1.0, .beta = 1.0, .a = {1, 3, 2, 4}, .c = {23, 34, 31, 46}}.run()[0];
  EXPECT_TRUE(by_product == 0.0 && !std::signbit(by_product));
}

TEST(ProductRoutes, PrdgemmReadsNeitherOptionsNorAlpha) {
  Call x{.transa = '?', .alpha = nan, .beta = nan};  // stores
  x.run_adapter();
  EXPECT_EQ(x.c[0], 23.0);
  EXPECT_EQ(x.c[3], 46.0);
}

}  // namespace
