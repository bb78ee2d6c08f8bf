// SPDX-License-Identifier: MIT
// e_daxpyi, e_ddoti, e_dgthr, e_dsctr.
#include <gtest/gtest.h>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/strided_vectors.h"

namespace zortest {
namespace {

constexpr int full = 40;  // shorter than the longest index vector, so that indices repeat

TEST(SparseVectors, GoThroughTheIndicesInAscendingOrder) {
  Random random(21);
  int order_mattered = 0;
  for_vectors([&](int32_t n, std::size_t at) {
    SCOPED_TRACE(testing::Message() << "n " << n << " at " << at);
    const std::size_t length = static_cast<std::size_t>(n > 0 ? n : 0);
    std::vector<int32_t> places(length);
    for (int32_t& k : places) {
      k = random.integer(1, full);
    }
    Guarded<double> x(spread<double>(random, length), 0, at);
    Guarded<double> y(spread<double>(random, full), 1, at);
    const Guarded<int32_t> indx(places, 0, at);
    const std::vector<double> old_x = x.values();
    std::vector<double> full_y = y.values();

    std::vector<double> terms(length);
    for (std::size_t i = 0; i < length; ++i) {
      terms[i] = old_x[i] * full_y[static_cast<std::size_t>(places[i] - 1)];
    }
    const double expected = sum_in_order(terms, peel(at));
    EXPECT_TRUE(same_bits(expected, e_ddoti(&n, x.data(), indx.data(), y.data())));
    order_mattered += expected != sum_in_order(terms, no_groups) ? 1 : 0;

    const double alpha = 0.7;
    e_daxpyi(&n, &alpha, x.data(), indx.data(), y.data());
    for (std::size_t i = 0; i < length; ++i) {
      full_y[static_cast<std::size_t>(places[i] - 1)] += alpha * old_x[i];
    }
    expect_same_bits(full_y, y.values());

    e_dgthr(&n, y.data(), x.data(), indx.data());
    std::vector<double> gathered(length);
    for (std::size_t i = 0; i < length; ++i) {
      gathered[i] = full_y[static_cast<std::size_t>(places[i] - 1)];
    }
    expect_same_bits(gathered, x.values());

    e_dsctr(&n, old_x.data(), indx.data(), y.data());
    for (std::size_t i = 0; i < length; ++i) {
      full_y[static_cast<std::size_t>(places[i] - 1)] = old_x[i];  // the last of a repeated index stays
    }
    expect_same_bits(full_y, y.values());
    ASSERT_TRUE(x.intact() && y.intact());
  });
  EXPECT_GT(order_mattered, 100) << "the numbers do not tell one order from another";
}

TEST(SparseVectors, UpdateByZeroTimesNaNDoesNothing) {
  const int32_t n = 1;
  const double zero = 0;
  double y = 1;
  e_daxpyi(&n, &zero, &nan, &n, &y);
  EXPECT_EQ(y, 1);
}

}  // namespace
}  // namespace zortest
