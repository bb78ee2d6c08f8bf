// SPDX-License-Identifier: MIT
// NaN among the largest elements, the magnitudes that the norm tells apart, rotations known exactly.
#include <gtest/gtest.h>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/norm_oracle.h"
#include "vector_kernels/level1/strided_vectors.h"

namespace zortest {
namespace {

constexpr int32_t one = 1;

void expect_largest(int index, double magnitude, int32_t n, const double* x, int32_t inc) {
  ASSERT_EQ(index, e_idamax(&n, x, &inc)) << "n " << n << " inc " << inc;
  ASSERT_TRUE(same_bits(magnitude, damax(&n, x, &inc))) << "n " << n << " inc " << inc;
}

TEST(LargestMagnitude, IsTheFirstOfItsSizeAndPassesOverNaN) {
  for (int32_t n = 2; n <= 1030; n += n < 40 ? 1 : 97) {
    for (const int32_t inc : {1, 2}) {
      for (int first = 0; first + 1 < n; ++first) {
        std::vector<double> x(reach(n, inc), 1.0);
        x[place(n - 1, n, inc)] = 2;
        x[place(first, n, inc)] = -2;
        expect_largest(first + 1, 2, n, x.data(), inc);
        x[place(first, n, inc)] = nan;
        expect_largest(n, 2, n, x.data(), inc);
      }
    }
  }
  const std::vector<double> nans(58, nan);
  expect_largest(1, nan, 20, nans.data(), 1);
  expect_largest(1, nan, 20, nans.data(), 3);
  expect_largest(1, 7, INT32_MAX, std::vector<double>{-7, 9}.data(), 0);
  EXPECT_EQ(e_idamax(&one, nullptr, &one), 1) << "a single element need not be read";
}

TEST(EuclideanNorm, EverySequenceOfMagnitudes) {
  const double kinds[] = {0, 5e-324, 3e-200, -8.232e-11, 8.3e-11, -1.7, 4e18, -1.304e19 / 5, 3e200, inf, nan};
  const int32_t n = 5;
  for (int code = 0; code < 161051; ++code) {
    std::vector<double> x;
    for (int rest = code + 161051; rest > 1; rest /= 11) {
      x.push_back(kinds[rest % 11]);
    }
    ASSERT_TRUE(same_bits(norm(x), e_dnrm2(&n, x.data(), &one))) << "code " << code;
  }
  const int32_t two = 2;
  for (const double scale : {1e200, 1e-200, 1.0}) {
    EXPECT_DOUBLE_EQ(e_dnrm2(&two, std::vector<double>{3 * scale, 4 * scale}.data(), &one), 5 * scale);
  }
}

// The limit between mid-range and large elements takes the length through single precision: 2^24 + 1 counts as 2^24.
TEST(EuclideanNorm, LengthIsRoundedToSinglePrecision) {
  const int32_t n = (1 << 24) + 1;
  const int32_t again = 0;
  const double x = 1.304e19 / (16777216.5);
  double sum = 0;
  for (int32_t i = 0; i < n; ++i) {
    sum += x * x;
  }
  ASSERT_FALSE(same_bits(std::sqrt(sum), x * std::sqrt(static_cast<double>(n))));
  EXPECT_TRUE(same_bits(std::sqrt(sum), e_dnrm2(&n, &x, &again)));
}

TEST(PlaneRotation, ExactCases) {
  struct Rotation {
    double a, b, r, z, c, s;  // a and b become r and z
  };
  for (const Rotation& exact :
       {Rotation{0, 0, 0, 0, 1, 0}, Rotation{-0.0, 0, -0.0, 0, 1, 0}, Rotation{0, 2, 2, 1, 0, 1},
        Rotation{2, 0, 2, 0, 1, 0}, Rotation{-3, 0, -3, -0.0, 1, -0.0}, Rotation{0, -4, -4, 1, -0.0, 1},
        Rotation{1e300, 0, 1e300, 0, 1, 0}, Rotation{-4, 3, -5, -0.375 * 1.6, 0.8, -0.375 * 1.6},
        Rotation{3, -4, -5, 1 / (-0.375 * 1.6), -0.375 * 1.6, 0.8}}) {
    Rotation got{exact.a, exact.b, exact.a, exact.b, nan, nan};
    e_drotg(&got.r, &got.z, &got.c, &got.s);
    EXPECT_TRUE(same_bits(got.r, exact.r) && same_bits(got.z, exact.z) && same_bits(got.c, exact.c) &&
                same_bits(got.s, exact.s))
        << exact.a << " " << exact.b << " gave " << got.r << " " << got.z << " " << got.c << " " << got.s;
  }
}

TEST(Updates, ByZeroTimesNaNDoNothing) {
  for (const double zero : {0.0, -0.0}) {
    double y = 1;
    e_daxpy(&one, &zero, &nan, &one, &y, &one);
    e_daxpyi(&one, &zero, &nan, &one, &y);
    EXPECT_EQ(y, 1);
  }
}

}  // namespace
}  // namespace zortest
