// SPDX-License-Identifier: MIT
// The order of eagemm's tests in a process whose threading mode is not 2: what is delegated, what is checked, what
// stops.
#include <fenv.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>

#include "ZORMathematics.h"
#include "matrix_kernels/product_oracle.h"

namespace {

using zortest::nan;

// A 2 × 2 product whose arguments a test may spoil.
struct Call {
  char transa = 'N', transb = 'N';
  int32_t m = 2, n = 2, k = 2, lda = 2, ldb = 2, ldc = 2;
  double alpha = 1.0, beta = 0.0;
  std::array<double, 16> a{1, 2, 3, 4}, b{5, 6, 7, 8}, c{1, 10, 100, 1000};

  void run() { eagemm(&transa, &transb, &m, &n, &k, &alpha, a.data(), &lda, b.data(), &ldb, &beta, c.data(), &ldc); }
};

TEST(ProductRoutes, EverySignAndAccumulationOfThePlainProduct) {
  // A·B = [23 31; 34 46]
  const auto result = [](double alpha, double beta) {
    Call x;
    x.alpha = alpha;
    x.beta = beta;
    x.run();
    return std::array<double, 4>{x.c[0], x.c[1], x.c[2], x.c[3]};
  };
  EXPECT_EQ(result(1.0, 0.0), (std::array<double, 4>{23, 34, 31, 46}));
  EXPECT_EQ(result(1.0, -0.0), (std::array<double, 4>{23, 34, 31, 46}));
  EXPECT_EQ(result(1.0, 1.0), (std::array<double, 4>{24, 44, 131, 1046}));
  EXPECT_EQ(result(-1.0, 1.0), (std::array<double, 4>{-22, -24, 69, 954}));
  EXPECT_EQ(result(-1.0, 0.0), (std::array<double, 4>{-23, -34, -31, -46}));
  EXPECT_EQ(result(2.0, 1.0), (std::array<double, 4>{47, 78, 162, 1092}));
}

TEST(ProductRoutes, TheDelegatedRouteChecksNothing) {
  Call x;
  x.lda = 1;  // columns of A overlap: (1, 2), (2, 3)
  x.run();
  EXPECT_EQ(x.c[0], 1 * 5 + 2 * 6);
  EXPECT_EQ(x.c[1], 2 * 5 + 3 * 6);

  Call negative;
  negative.m = negative.n = negative.ldc = -1;
  negative.alpha = -1.0;
  negative.run();
  EXPECT_EQ(negative.c, Call().c);

  Call empty;
  empty.k = 0;
  empty.c[0] = nan;
  empty.run();
  EXPECT_EQ(empty.c[0], 0.0);
  empty.c = Call().c;
  empty.beta = 1.0;
  empty.run();
  EXPECT_EQ(empty.c, Call().c);
}

TEST(ProductRoutes, QuickReturnsComeBeforeTheChecks) {
  for (const bool no_rows : {true, false}) {
    Call x;
    x.transa = '?';
    x.k = -3;
    (no_rows ? x.m : x.n) = 0;
    x.run();
    EXPECT_EQ(x.c, Call().c);
  }
  Call x;
  x.transb = '?';
  x.alpha = 0.0;
  x.beta = 1.0;
  x.run();
  EXPECT_EQ(x.c, Call().c);
}

using ProductStops = testing::TestWithParam<void (*)(Call&)>;

TEST_P(ProductStops, ABadArgumentStopsTheProcess) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  Call x;
  x.beta = 0.5;  // not to be delegated
  GetParam()(x);
  EXPECT_EXIT(x.run(), testing::ExitedWithCode(1), "^DGEMM FATAL ERROR\n$");
}

INSTANTIATE_TEST_SUITE_P(EachArgument, ProductStops,
                         testing::Values([](Call& x) { x.transa = 'X'; }, [](Call& x) { x.transb = '\0'; },
                                         [](Call& x) { x.m = -1; }, [](Call& x) { x.n = -1; },
                                         [](Call& x) { x.k = -1; }, [](Call& x) { x.lda = 1; },
                                         [](Call& x) { x.ldb = 1; }, [](Call& x) { x.ldc = 1; },
                                         [](Call& x) {
                                           x.transa = 'T';  // a leading dimension is at least 1, whatever k is
                                           x.k = x.lda = 0;
                                         },
                                         [](Call& x) { x.k = x.ldb = 0; },
                                         [](Call& x) {
                                           x.transa = 'c';
                                           x.k = 3;  // A is 3 × 2 now, lda = 2 too small
                                           x.ldb = 3;
                                         },
                                         [](Call& x) {
                                           x.transb = 'T';
                                           x.n = 3;  // B is 3 × 2 now
                                         }));

// The traps that are left of the divide-by-zero trap, run in a child.
[[noreturn]] void exit_with_traps_after(const std::function<void()>& product) {
  feenableexcept(FE_DIVBYZERO);
  product();
  std::exit(fegetexcept() == FE_DIVBYZERO ? 1 : fegetexcept() == 0 ? 0 : 2);
}

TEST(ProductRoutes, OnlyTheDelegatedRouteOfEagemmClearsTheTraps) {
  const auto traps_left = testing::ExitedWithCode(1);
  const auto traps_cleared = testing::ExitedWithCode(0);
  Call x;
  EXPECT_EXIT(exit_with_traps_after([&] { x.run(); }), traps_cleared, "");
  x.alpha = -1.0;
  EXPECT_EXIT(exit_with_traps_after([&] { x.run(); }), traps_cleared, "");
  x.m = 0;  // delegated all the same
  EXPECT_EXIT(exit_with_traps_after([&] { x.run(); }), traps_cleared, "");
  x.alpha = 2.0;
  EXPECT_EXIT(exit_with_traps_after([&] { x.run(); }), traps_left, "");
  x.m = 2;
  EXPECT_EXIT(exit_with_traps_after([&] { x.run(); }), traps_left, "");
  const auto adapter = [&] {
    prdgemm(&x.transa, &x.transb, &x.m, &x.n, &x.k, &x.alpha, x.a.data(), &x.lda, x.b.data(), &x.ldb, &x.beta,
            x.c.data(), &x.ldc);
  };
  EXPECT_EXIT(exit_with_traps_after(adapter), traps_left, "");
}

// C - A·B by negating before and after leaves -0 where the other routes leave 0.
TEST(ProductRoutes, NegationShowsInTheSignOfZero) {
  Call x;
  x.alpha = -1.0;
  x.beta = 1.0;
  x.c = {23, 34, 31, 46};
  x.run();
  EXPECT_TRUE(x.c[0] == 0.0 && std::signbit(x.c[0]));
  x.c[0] = 23;
  x.transa = 'T';
  x.a = {1, 3, 2, 4};
  x.run();
  EXPECT_TRUE(x.c[0] == 0.0 && !std::signbit(x.c[0]));
}

TEST(ProductRoutes, PrdgemmReadsNeitherOptionsNorAlpha) {
  Call x;
  x.alpha = nan;
  x.transa = '?';
  x.beta = nan;  // stores
  EXPECT_EQ(prdgemm(&x.transa, &x.transb, &x.m, &x.n, &x.k, &x.alpha, x.a.data(), &x.lda, x.b.data(), &x.ldb, &x.beta,
                    x.c.data(), &x.ldc),
            0);
  EXPECT_EQ(x.c[0], 23.0);
  EXPECT_EQ(x.c[3], 46.0);
}

}  // namespace
