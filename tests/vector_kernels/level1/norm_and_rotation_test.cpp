// SPDX-License-Identifier: MIT
// e_dnrm2, e_drotg.
#include <gtest/gtest.h>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/norm_oracle.h"
#include "vector_kernels/level1/strided_vectors.h"

namespace zortest {
namespace {

constexpr int32_t one = 1;

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
}

TEST(EuclideanNorm, EveryWalk) {
  Random random(31);
  for_vectors([&](int32_t n, std::size_t at) {
    for (const int32_t inc : increments) {
      const double scales[] = {1, 1e-300, 1e290, 1e-17, 1e17};
      std::vector<double> v = spread<double>(random, reach(n, inc));
      for (double& vi : v) {
        vi *= scales[at / 8 % 5];
      }
      const Guarded<double> x(v, 0, at);
      ASSERT_TRUE(same_bits(norm(walked(v, n, inc)), e_dnrm2(&n, x.data(), &inc))) << "n " << n << " inc " << inc;
    }
  });
}

TEST(EuclideanNorm, NeitherOverflowsNorUnderflows) {
  const int32_t n = 2;
  for (const double scale : {1e200, 1e-200, 1.0}) {
    EXPECT_DOUBLE_EQ(e_dnrm2(&n, std::vector<double>{3 * scale, 4 * scale}.data(), &one), 5 * scale);
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

struct Rotation {
  double a, b, r, z, c, s;  // a and b become r and z
};

void expect_rotation(const Rotation& expected) {
  Rotation got{0, 0, expected.a, expected.b, nan, nan};
  e_drotg(&got.r, &got.z, &got.c, &got.s);
  EXPECT_TRUE(same_bits(got.r, expected.r) && same_bits(got.z, expected.z) && same_bits(got.c, expected.c) &&
              same_bits(got.s, expected.s))
      << expected.a << " " << expected.b << " gave " << got.r << " " << got.z << " " << got.c << " " << got.s;
}

TEST(PlaneRotation, ExactCases) {
  for (const Rotation& exact :
       {Rotation{0, 0, 0, 0, 1, 0}, Rotation{-0.0, 0, -0.0, 0, 1, 0}, Rotation{0, 2, 2, 1, 0, 1},
        Rotation{2, 0, 2, 0, 1, 0}, Rotation{-3, 0, -3, -0.0, 1, -0.0}, Rotation{0, -4, -4, 1, -0.0, 1},
        Rotation{1e300, 0, 1e300, 0, 1, 0}}) {
    expect_rotation(exact);
  }
}

TEST(PlaneRotation, AnnihilatesTheSecondComponentByTheStatedSteps) {
  Random random(32);
  for (int trial = 0; trial < 20000; ++trial) {
    const double a = std::ldexp(random.uniform(), random.integer(-900, 900));
    const double b = trial % 10 == 0 ? -a : a * std::ldexp(random.uniform(), random.integer(-5, 5));
    const bool a_leads = std::fabs(a) > std::fabs(b);
    const double large = a_leads ? a : b;
    const double v = (a_leads ? b : a) / (2 * large);
    const double r = std::sqrt(0.25 + v * v) * (2 * large);
    const double leading = large / r;
    const double trailing = v * (2 * leading);
    const double c = a_leads ? leading : trailing;
    const double s = a_leads ? trailing : leading;
    expect_rotation({a, b, r, a_leads ? s : 1 / c, c, s});
    EXPECT_NEAR((c * a + s * b) / r, 1, 1e-15);
    EXPECT_NEAR((c * b - s * a) / r, 0, 1e-15);
  }
}

}  // namespace
}  // namespace zortest
