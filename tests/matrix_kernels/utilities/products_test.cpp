// SPDX-License-Identifier: MIT
// eaxscl, eaxmmp, ebhpap.
#include <gtest/gtest.h>

#include <cmath>

#include "ZORTAVMatrixUtilities.h"
#include "support/numbers.h"

namespace zortest {
namespace {

TEST(ScalarProduct, KeepsItsOrder) {
  Random random(35);
  for (int32_t n = -1; n <= 70; ++n) {
    const auto count = static_cast<std::size_t>(std::max(n, 0));
    for (const int32_t incx : {1, 2, 0, -1, -3}) {
      for (const int32_t incy : {1, -1, 2}) {
        const std::vector<double> x = random.vector(3 * count + 1);
        const std::vector<double> y = random.vector(2 * count + 1);
        const auto term = [&](int i) {
          const int at_x = incx < 0 ? (n - 1 - i) * -incx : i * incx;
          const int at_y = incy < 0 ? (n - 1 - i) * -incy : i * incy;
          return x[static_cast<std::size_t>(at_x)] * y[static_cast<std::size_t>(at_y)];
        };
        double s[8] = {};
        const bool contiguous = incx == 1 && incy == 1;
        for (int i = 0; i < n; ++i) {
          s[contiguous ? i % 8 : 0] += term(i);
        }
        const double expected = contiguous ? ((s[0] + s[4]) + (s[2] + s[6])) + ((s[1] + s[5]) + (s[3] + s[7])) : s[0];
        const Guarded<double> gx(x, static_cast<std::size_t>(random.integer(0, 7)));
        ASSERT_TRUE(same_bits(expected, eaxscl(&n, gx.data(), &incx, y.data(), &incy)))
            << n << " " << incx << " " << incy;
      }
    }
  }
  const int32_t three = 3;
  const int32_t minus = -1;
  const int32_t one = 1;
  EXPECT_EQ(eaxscl(&three, std::vector<double>{1, 2, 3}.data(), &minus, std::vector<double>{1, 0, 0}.data(), &one), 3);
}

// C must be |A||B| of m·n elements, within k·eps of the sum of magnitudes.
void expect_product(std::size_t m, std::size_t k, std::size_t n, const double* a, const double* b, const double* c) {
  for (std::size_t i = 0; i < m; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      double sum = 0;
      double size = 0;
      for (std::size_t l = 0; l < k; ++l) {
        sum += a[i + l * m] * b[l + j * k];
        size += std::fabs(a[i + l * m] * b[l + j * k]);
      }
      ASSERT_LE(std::fabs(c[i + j * m] - sum), static_cast<double>(k + 8) * 0x1p-52 * size) << i << ", " << j;
    }
  }
}

TEST(PlainProduct, TakesTheInnerDimensionSecond) {
  Random random(36);
  const int32_t m = 5;
  const int32_t k = 11;
  const int32_t n = 3;
  const std::vector<double> a = random.vector(55);
  const std::vector<double> b = random.vector(33);
  Guarded<double> c(std::vector<double>(15, nan), 1);
  eaxmmp(&m, &k, &n, a.data(), b.data(), c.data());
  expect_product(5, 11, 3, a.data(), b.data(), c.data());
  EXPECT_TRUE(c.intact());
}

TEST(DiagonalCongruence, IsTheProduct) {
  Random random(37);
  for (const int32_t n : {0, 1, 3, 16, 17, 40}) {
    const auto order = static_cast<std::size_t>(n);
    const std::vector<double> p = random.vector(order * order);
    const std::vector<double> d = random.vector(order);
    Guarded<double> w(order * order, 1);
    Guarded<double> r(order * order, 3);
    ebhpap(&n, p.data(), d.data(), w.data(), r.data());
    for (std::size_t i = 0; i < order; ++i) {
      for (std::size_t j = 0; j < order; ++j) {
        ASSERT_EQ(w[j + i * order], d[j] * p[i + j * order]);
      }
    }
    expect_product(order, order, order, p.data(), w.data(), r.data());
    ASSERT_TRUE(w.intact() && r.intact());
  }
}

}  // namespace
}  // namespace zortest
