// SPDX-License-Identifier: MIT
// e_dasum, damax, e_idamax.
#include <gtest/gtest.h>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/strided_vectors.h"

namespace zortest {
namespace {

constexpr int32_t one = 1;

std::vector<double> magnitudes(const double* x, int n, int inc) {
  std::vector<double> v;
  for (int i = 0; i < n; ++i) {
    double xi = 0;
    std::memcpy(&xi, x + i * std::abs(inc), sizeof xi);
    v.push_back(std::fabs(xi));
  }
  return v;
}

Order order_of(const double* x, int inc) {
  return inc == 1 ? contiguous_order(x) : inc == 0 ? Order::one_by_one : Order::groups;
}

std::vector<int32_t> lengths(std::initializer_list<int32_t> long_ones) {
  std::vector<int32_t> all;
  for (int32_t n = -1; n <= 67; ++n) {
    all.push_back(n);
  }
  all.insert(all.end(), long_ones);
  return all;
}

TEST(SumOfMagnitudes, KeepsItsOrder) {
  Random random(1);
  int order_mattered = 0;
  for (const int32_t n : lengths({200, 1001})) {
    for (const int32_t inc : increments) {
      for (std::size_t offset = 0; offset < 8; ++offset) {
        const Guarded<double> x(spread(random, reach(n, inc)), offset);
        const std::vector<double> terms = magnitudes(x.data(), n, inc);
        const double expected = sum_in_order(terms, order_of(x.data(), inc));
        ASSERT_TRUE(same_bits(expected, e_dasum(&n, x.data(), &inc)))
            << "n " << n << " inc " << inc << " at " << offset;
        order_mattered += expected != sum_in_order(terms, Order::one_by_one) ? 1 : 0;
      }
    }
  }
  EXPECT_GT(order_mattered, 500) << "the numbers do not tell one order from another";
}

TEST(SumOfMagnitudes, GivesUpGroupsOffTheElementBoundary) {
  Random random(2);
  for (const int32_t n : {1, 7, 8, 9, 31, 64, 67}) {
    for (const int32_t inc : increments) {
      OffBoundary x(spread(random, reach(n, inc)));
      const Order order = inc == 1 || inc == 0 ? Order::one_by_one : Order::groups;
      EXPECT_TRUE(same_bits(sum_in_order(magnitudes(x.data(), n, inc), order), e_dasum(&n, x.data(), &inc)));
    }
  }
}

struct Largest {
  int index = 0;
  double magnitude = 0;
};

Largest sequential_largest(const std::vector<double>& v) {
  Largest found;
  for (std::size_t i = 0; i < v.size(); ++i) {
    if (i == 0 || !(v[i] <= found.magnitude)) {
      found = {static_cast<int>(i) + 1, v[i]};
    }
  }
  return found;
}

void expect_largest(const Largest& expected, int32_t n, const double* x, int32_t inc) {
  ASSERT_EQ(expected.index, e_idamax(&n, x, &inc)) << "n " << n << " inc " << inc;
  ASSERT_TRUE(same_bits(expected.magnitude, damax(&n, x, &inc))) << "n " << n << " inc " << inc;
}

TEST(LargestMagnitude, OfTiesTheFirst) {
  Random random(3);
  for (const int32_t n : lengths({255, 256, 257, 511, 512, 513, 1500})) {
    for (const int32_t inc : increments) {
      for (std::size_t offset = 0; offset < 8; ++offset) {
        Guarded<double> x(reach(n, inc), offset);
        for (std::size_t i = 0; i < x.size(); ++i) {
          x[i] = random.integer(-9, 9);
        }
        expect_largest(sequential_largest(magnitudes(x.data(), n, inc)), n, x.data(), inc);
      }
    }
  }
}

TEST(LargestMagnitude, IsFoundWhereverItStands) {
  for (const int32_t n : lengths({600})) {
    for (const int32_t inc : {1, 2}) {
      std::vector<double> x(reach(n, inc), 1.0);
      for (int at = 0; at < n; ++at) {
        double& peak = x[place(at, n, inc)];
        peak = -2;
        expect_largest({at + 1, 2}, n, x.data(), inc);
        peak = nan;  // passed over
        expect_largest({n == 1 || at > 0 ? 1 : 2, n == 1 ? nan : 1}, n, x.data(), inc);
        peak = 1;
      }
    }
  }
}

TEST(LargestMagnitude, SpecialVectors) {
  expect_largest({2, 3}, 3, std::vector<double>{1, -3, 3}.data(), 1);
  expect_largest({1, 0}, 2, std::vector<double>{0, -0.0}.data(), 1);
  expect_largest({2, inf}, 3, std::vector<double>{1, -inf, inf}.data(), 1);
  expect_largest({1, nan}, 20, std::vector<double>(20, nan).data(), 1);
  expect_largest({1, nan}, 20, std::vector<double>(58, nan).data(), 3);
  EXPECT_EQ(e_idamax(&one, nullptr, &one), 1) << "a single element need not be read";
  const int32_t most = INT32_MAX;
  const int32_t no_step = 0;
  expect_largest({1, 7}, most, std::vector<double>{-7, 9}.data(), no_step);
  OffBoundary x({1, -2, 3, -4, 5, -6, 7, -9, 8, 9, 1});
  expect_largest({8, 9}, 11, x.data(), 1);
  expect_largest({5, 8}, 6, x.data(), -2);
}

}  // namespace
}  // namespace zortest
