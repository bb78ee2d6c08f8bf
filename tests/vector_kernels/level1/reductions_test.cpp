// SPDX-License-Identifier: MIT
// e_dasum, damax, e_idamax.
#include <gtest/gtest.h>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/strided_vectors.h"

namespace zortest {
namespace {

constexpr int32_t one = 1;

TEST(SumOfMagnitudes, KeepsItsOrder) {
  Random random(1);
  int order_mattered = 0;
  for_vectors([&](int32_t n, std::size_t at) {
    for (const int32_t inc : increments) {
      const Guarded<double> x(spread<double>(random, reach(n, inc)), 0, at);
      std::vector<double> terms = walked(x.values(), n, inc);
      for (double& term : terms) {
        term = std::fabs(term);
      }
      const double expected = sum_in_order(terms, inc == 1 ? peel(at) : inc == 0 ? no_groups : 0);
      ASSERT_TRUE(same_bits(expected, e_dasum(&n, x.data(), &inc))) << "n " << n << " inc " << inc << " at " << at;
      order_mattered += expected != sum_in_order(terms, no_groups) ? 1 : 0;
    }
  });
  EXPECT_GT(order_mattered, 500) << "the numbers do not tell one order from another";
}

void expect_largest(int index, double magnitude, int32_t n, const double* x, int32_t inc) {
  ASSERT_EQ(index, e_idamax(&n, x, &inc)) << "n " << n << " inc " << inc;
  ASSERT_TRUE(same_bits(magnitude, damax(&n, x, &inc))) << "n " << n << " inc " << inc;
}

TEST(LargestMagnitude, IsFoundWhereverItStandsFirst) {
  for_vectors([](int32_t n, std::size_t at) {
    for (const int32_t inc : increments) {
      for (int first = 0; first < n; ++first) {
        std::vector<double> x(reach(n, inc), 1.0);
        x[place(n - 1, n, std::abs(inc))] = 2;
        x[place(first, n, std::abs(inc))] = -2;
        expect_largest(inc == 0 ? 1 : first + 1, 2, n, Guarded<double>(x, 0, at).data(), inc);
        if (inc != 0 && first + 1 < n) {
          x[place(first, n, std::abs(inc))] = nan;  // passed over
          expect_largest(n, 2, n, Guarded<double>(x, 0, at).data(), inc);
        }
      }
    }
  });
}

TEST(LargestMagnitude, SpecialVectors) {
  const std::vector<double> nans(58, nan);
  expect_largest(0, 0, 0, nans.data(), 1);
  expect_largest(0, 0, -1, nans.data(), 2);
  expect_largest(1, nan, 20, nans.data(), 1);
  expect_largest(1, nan, 20, nans.data(), 3);
  expect_largest(2, 3, 3, std::vector<double>{1, -3, 3}.data(), 1);
  expect_largest(1, 0, 2, std::vector<double>{0, -0.0}.data(), 1);
  expect_largest(2, inf, 3, std::vector<double>{1, -inf, inf}.data(), 1);
  expect_largest(1, 7, INT32_MAX, std::vector<double>{-7, 9}.data(), 0);
  EXPECT_EQ(e_idamax(&one, nullptr, &one), 1) << "a single element need not be read";
}

}  // namespace
}  // namespace zortest
