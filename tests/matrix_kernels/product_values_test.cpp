// SPDX-License-Identifier: MIT
// eagemm against the naive product in the documented order, to the last bit. Built twice: for a process in threading
// mode 0 (plain products are delegated) and for one in mode 2.
#include <gtest/gtest.h>

#include "matrix_kernels/product_oracle.h"

namespace {

using zortest::inf;
using zortest::nan;
using zortest::ProductCase;
using zortest::Random;

constexpr char options[] = {'N', 'n', 'T', 't', 'C', 'c'};
constexpr double factors[] = {1.0, -1.0, 0.0, 0.75, -2.5};

TEST(ProductValues, EverySmallSizeOption) {
  Random random(20261);
  for (int32_t m = 1; m <= 9; ++m) {
    for (int32_t n = 1; n <= 13; ++n) {
      for (const int32_t k : {1, 2, 7, 8, 9, 17}) {
        ProductCase x{options[random.integer(0, 5)], options[random.integer(0, 5)], m, n, k,
                      factors[random.integer(0, 4)], factors[random.integer(0, 4)]};
        x.lda_extra = random.integer(0, 3);
        x.ldb_extra = random.integer(0, 3);
        x.ldc_extra = random.integer(0, 3);
        x.offset = static_cast<std::size_t>(random.integer(0, 7));
        if (x.alpha != 0.0) {
          zortest::expect_stated_bits(x, random);
        }
      }
    }
  }
}

TEST(ProductValues, AroundEveryBlockBoundary) {
  Random random(20262);
  const int32_t sizes[][3] = {{79, 5, 247}, {80, 6, 248}, {81, 7, 249}, {161, 3, 497}, {4, 95, 250},   {3, 96, 249},
                              {5, 97, 248}, {2, 193, 9},  {1, 1023, 3}, {3, 1024, 17}, {82, 1025, 25}, {240, 64, 64}};
  // Each size meets three of the twelve pairs of options and beta; neighbouring sizes meet different ones.
  const char* const pairs[] = {"NN", "NT", "TN", "TT"};
  const double betas[] = {0.0, 1.0, -0.5};
  std::size_t turn = 0;
  for (const auto& [m, n, k] : sizes) {
    for (int repeat = 0; repeat < 3; ++repeat, turn += 5) {
      const char* const ops = pairs[turn % 4];
      ProductCase x{ops[0], ops[1], m, n, k, 1.0, betas[turn % 3]};
      x.ldb_extra = random.integer(0, 2);
      x.offset = static_cast<std::size_t>(random.integer(0, 7));
      zortest::expect_stated_bits(x, random);
    }
  }
}

TEST(ProductValues, OldContentsReachTheResultOnlyThroughBeta) {
  for (const char* ops : {"NN", "TT"}) {
    for (const int32_t k : {5, 300}) {
      const ProductCase clear{ops[0], ops[1], 6, 5, k, 1.0, 0.0};
      const std::vector<double> ones(clear.a_size(), 1.0);
      const std::vector<double> b(clear.b_size(), 2.0);
      for (const double c : zortest::library_product(clear, ones, b, std::vector<double>(clear.c_size(), nan))) {
        EXPECT_EQ(c, 2.0 * k);
      }
      const ProductCase keep{ops[0], ops[1], 6, 5, k, 1.0, 1.0};
      for (const double c : zortest::library_product(keep, ones, b, std::vector<double>(keep.c_size(), inf))) {
        EXPECT_EQ(c, inf);
      }
    }
  }
}

// Nothing beyond the operands is read into a result: what lies behind a short column of B may be anything.
TEST(ProductValues, NeighboursOfTheOperandsDoNotMatter) {
  for (const char* ops : {"NN", "NT", "TN", "TT"}) {
    ProductCase x{ops[0], ops[1], 7, 5, 13, 1.5, 0.0};
    x.lda_extra = x.ldb_extra = 9;
    std::vector<double> a(x.a_size(), nan);
    std::vector<double> b(x.b_size(), nan);
    for (int32_t j = 0; j < (x.transpose_a() ? x.m : x.k); ++j) {
      for (int32_t i = 0; i < (x.transpose_a() ? x.k : x.m); ++i) {
        a[static_cast<std::size_t>(i + j * x.lda())] = 1.0;
      }
    }
    for (int32_t j = 0; j < (x.transpose_b() ? x.k : x.n); ++j) {
      for (int32_t i = 0; i < (x.transpose_b() ? x.n : x.k); ++i) {
        b[static_cast<std::size_t>(i + j * x.ldb())] = 1.0;
      }
    }
    for (const double c : zortest::library_product(x, a, b, std::vector<double>(x.c_size(), 4.0))) {
      EXPECT_EQ(c, 19.5);
    }
  }
}

TEST(ProductValues, ScalingWithoutAProduct) {
  const auto scaled = [](double alpha, double beta, int32_t k, double old) {
    ProductCase x{'N', 'T', 3, 2, k, alpha, beta};
    x.lda_extra = x.ldb_extra = x.ldc_extra = 2;
    const auto c =
        zortest::library_product(x, std::vector<double>(x.a_size() + 8, nan), std::vector<double>(x.b_size() + 8, nan),
                                 std::vector<double>(x.c_size(), old));
    EXPECT_TRUE(zortest::same_bits(c[3], old) && zortest::same_bits(c[4], old)) << "rows beyond m";
    return c[0];
  };
  EXPECT_EQ(scaled(0.0, 1.0, 4, 8.0), 8.0);
  EXPECT_EQ(scaled(0.0, 0.0, 4, nan), 0.0);
  EXPECT_EQ(scaled(0.0, 2.0, 4, 8.0), 16.0);
  EXPECT_EQ(scaled(3.0, 0.5, 0, 8.0), 4.0);
  EXPECT_EQ(scaled(3.0, 1.0, 0, 8.0), 8.0);
  EXPECT_TRUE(std::isnan(scaled(3.0, nan, 0, 8.0)));
}

}  // namespace
