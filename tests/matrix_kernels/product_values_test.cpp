// SPDX-License-Identifier: MIT
// eagemm against the naive product in the documented order, to the last bit. Built twice: for a process in threading
// mode 0 (plain products are delegated) and for one in mode 2.
#include <gtest/gtest.h>

#include "matrix_kernels/product_oracle.h"

namespace {

using zortest::Operands;
using zortest::ProductCase;
using zortest::Random;

void expect_stated_bits(ProductCase x, Random& random) {
  x.ldb_extra = random.integer(0, 3);
  x.offset = static_cast<std::size_t>(random.integer(0, 7));
  SCOPED_TRACE(x.text());
  const Operands operands(x, random);
  zortest::expect_same_bits(operands.in_stated_order(), operands.product());
}

TEST(ProductValues, EverySmallSizeOption) {
  constexpr char options[] = {'N', 'n', 'T', 't', 'C', 'c'};
  constexpr double factors[] = {1.0, -1.0, 0.0, -0.0, 0.75, -2.5};
  Random random(20261);
  // Leave no numbers in the stack's buffers, so that one read beyond what was packed would show.
  for (const char transb : {'N', 'T'}) {
    Operands({'N', transb, 80, 96, 248, zortest::nan, 0.0}, random).product();
  }
  for (int32_t m = 1; m <= 9; ++m) {
    for (int32_t n = 1; n <= 13; ++n) {
      for (const int32_t k : {0, 1, 2, 7, 8, 9, 17}) {
        ProductCase x{options[random.integer(0, 5)], options[random.integer(0, 5)], m, n, k,
                      factors[random.integer(0, 5)], factors[random.integer(0, 5)]};
        x.lda_extra = random.integer(0, 3);
        x.ldc_extra = random.integer(0, 3);
        if (k > 0 || x.alpha > 0.0) {  // nothing, subtracted by negating it, would leave -0
          expect_stated_bits(x, random);
        }
      }
    }
  }
  expect_stated_bits({'N', 'T', 3, 2, 0, 3.0, zortest::nan}, random);
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
      expect_stated_bits({ops[0], ops[1], m, n, k, 1.0, betas[turn % 3]}, random);
    }
  }
}

}  // namespace
