// SPDX-License-Identifier: MIT
// e_daxpyi, e_ddoti, e_dgthr, e_dsctr.
#include <gtest/gtest.h>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/strided_vectors.h"

namespace zortest {
namespace {

constexpr std::size_t full = 40;  // shorter than the longest index vector, so that indices repeat

struct Case {
  int32_t n;
  std::vector<double> x;
  std::vector<int32_t> indx;
  std::vector<double> y;

  Case(Random& random, int32_t length) : n(length), y(spread(random, full)) {
    x = spread(random, static_cast<std::size_t>(n > 0 ? n : 0));
    for (std::size_t i = 0; i < x.size(); ++i) {
      indx.push_back(random.integer(1, static_cast<int>(full)));
    }
  }
  double& y_at(std::size_t i) { return y[static_cast<std::size_t>(indx[i] - 1)]; }
};

template <class Check>
void for_cases(std::uint64_t seed, const Check& check) {
  Random random(seed);
  for (int32_t n = -1; n <= 67; ++n) {
    check(Case(random, n));
  }
  check(Case(random, 1000));
}

TEST(SparseVectors, UpdatesAddUpInAscendingOrder) {
  for_cases(21, [](Case c) {
    const double alpha = 0.7;
    Guarded<double> y(c.y, 3);
    e_daxpyi(&c.n, &alpha, c.x.data(), c.indx.data(), y.data());
    for (std::size_t i = 0; i < c.x.size(); ++i) {
      volatile const double product = alpha * c.x[i];  // rounded before it is added
      c.y_at(i) += product;
    }
    expect_same_bits(c.y, y.values());
    ASSERT_TRUE(y.intact());
  });
  const int32_t n = 1;
  const double zero = 0;
  double y = 1;
  e_daxpyi(&n, &zero, &nan, &n, &y);
  EXPECT_EQ(y, 1);
}

TEST(SparseVectors, DotProductKeepsItsOrder) {
  int order_mattered = 0;
  for_cases(22, [&](Case c) {
    std::vector<double> terms;
    for (std::size_t i = 0; i < c.x.size(); ++i) {
      terms.push_back(c.x[i] * c.y_at(i));
    }
    const double one_by_one = sum_in_order(terms, Order::one_by_one);
    for (std::size_t offset = 0; offset < 8; ++offset) {
      const Guarded<double> x(c.x, offset);
      const double expected = sum_in_order(terms, contiguous_order(x.data()));
      ASSERT_TRUE(same_bits(expected, e_ddoti(&c.n, x.data(), c.indx.data(), c.y.data()))) << "n " << c.n;
      order_mattered += expected != one_by_one ? 1 : 0;
    }
    OffBoundary x(c.x);
    OffBoundary y(c.y);
    ASSERT_TRUE(same_bits(one_by_one, e_ddoti(&c.n, x.data(), c.indx.data(), y.data()))) << "n " << c.n;
  });
  EXPECT_GT(order_mattered, 100) << "the numbers do not tell one order from another";
}

TEST(SparseVectors, GatherAndScatter) {
  for_cases(23, [](Case c) {
    Guarded<double> x(c.x.size(), 1);
    e_dgthr(&c.n, c.y.data(), x.data(), c.indx.data());
    for (std::size_t i = 0; i < c.x.size(); ++i) {
      ASSERT_TRUE(same_bits(c.y_at(i), x[i]));
    }
    ASSERT_TRUE(x.intact());

    Guarded<double> y(c.y, 1);
    e_dsctr(&c.n, c.x.data(), c.indx.data(), y.data());
    for (std::size_t i = 0; i < c.x.size(); ++i) {
      c.y_at(i) = c.x[i];  // the last of a repeated index stays
    }
    expect_same_bits(c.y, y.values());
    ASSERT_TRUE(y.intact());
  });
}

TEST(SparseVectors, ArraysOffTheirBoundary) {
  const int32_t n = 9;
  const double alpha = 2;
  const int32_t indx[] = {2, 2, 3, 1, 4, 4, 5, 6, 6};
  OffBoundary x({1, 2, 3, 4, 5, 6, 7, 8, 9});
  OffBoundary y(std::vector<double>(6, 0.5));
  e_daxpyi(&n, &alpha, x.data(), indx, y.data());
  expect_same_bits({8.5, 6.5, 6.5, 22.5, 14.5, 34.5}, y.values());
  e_dsctr(&n, x.data(), indx, y.data());
  expect_same_bits({4, 2, 3, 6, 7, 9}, y.values());
  e_dgthr(&n, y.data(), x.data(), indx);
  expect_same_bits({2, 2, 3, 4, 6, 6, 7, 9, 9}, x.values());
}

}  // namespace
}  // namespace zortest
