// SPDX-License-Identifier: MIT
// e_dnrm2, e_drotg.
#include <gtest/gtest.h>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/strided_vectors.h"

namespace zortest {
namespace {

constexpr int32_t one = 1;

// The four phases as an automaton that sees one element at a time.
class Norm {
 public:
  explicit Norm(double n) : hitest_(1.304e19 / static_cast<double>(static_cast<float>(n))) {}

  void see(double x) {
    const double size = std::fabs(x);
    if (phase_ == 1 && x != 0) {
      phase_ = size > 8.232e-11 ? 3 : 2;
      xmax_ = size;
      if (phase_ == 2) {
        sum_ = 1;
        return;
      }
    } else if (phase_ == 2 && size > 8.232e-11) {
      phase_ = 3;
      sum_ = (sum_ * xmax_) * xmax_;
    }
    if (phase_ == 3 && !(size < hitest_)) {
      phase_ = 4;
      sum_ = (sum_ / x) / x + 1;
      xmax_ = size;
    } else if (phase_ == 3) {
      sum_ = sum_ + x * x;
    } else if (phase_ != 1 && size <= xmax_) {
      sum_ = sum_ + (x / xmax_) * (x / xmax_);
    } else if (phase_ != 1) {
      const double r = xmax_ / x;
      sum_ = (sum_ * r) * r + 1;
      xmax_ = size;
    }
  }
  double value() const { return phase_ % 2 == 1 ? std::sqrt(sum_) : xmax_ * std::sqrt(sum_); }

 private:
  double hitest_;
  int phase_ = 1;
  double sum_ = 0;
  double xmax_ = 0;
};

double norm(const double* x, int n, int inc) {
  Norm norm(n);
  for (int i = 0; i < n; ++i) {
    norm.see(x[i * std::abs(inc)]);
  }
  return norm.value();
}

TEST(EuclideanNorm, EverySequenceOfMagnitudes) {
  const double kinds[] = {0, 5e-324, 3e-200, -8.232e-11, 8.3e-11, -1.7, 4e18, -1.304e19 / 5, 3e200, inf};
  constexpr int kind_count = static_cast<int>(std::size(kinds));
  const int32_t n = 5;
  for (int code = 0; code < kind_count * kind_count * kind_count * kind_count * kind_count; ++code) {
    double x[n];
    for (int i = 0, rest = code; i < n; ++i, rest /= kind_count) {
      x[i] = kinds[rest % kind_count];
    }
    ASSERT_TRUE(same_bits(norm(x, n, 1), e_dnrm2(&n, x, &one))) << "code " << code;
  }
}

TEST(EuclideanNorm, LongVectorsAndStrides) {
  Random random(31);
  for (int32_t n = -1; n <= 67; ++n) {
    for (const int32_t inc : increments) {
      for (const double scale : {1.0, 1e-300, 1e300, 1e-14, 1e17}) {
        std::vector<double> x = spread(random, reach(n, inc));
        for (double& xi : x) {
          xi *= scale;
        }
        const double expected = n < 1 ? 0 : norm(x.data(), n, inc);
        ASSERT_TRUE(same_bits(expected, e_dnrm2(&n, x.data(), &inc))) << "n " << n << " inc " << inc << " " << scale;
      }
    }
  }
}

TEST(EuclideanNorm, KnownValues) {
  const int32_t two = 2;
  EXPECT_DOUBLE_EQ(e_dnrm2(&two, std::vector<double>{3e200, 4e200}.data(), &one), 5e200);
  EXPECT_DOUBLE_EQ(e_dnrm2(&two, std::vector<double>{3e-200, 4e-200}.data(), &one), 5e-200);
  EXPECT_EQ(e_dnrm2(&two, std::vector<double>{0, -0.0}.data(), &one), 0);
  EXPECT_EQ(e_dnrm2(&two, std::vector<double>{1, -inf}.data(), &one), inf);
  EXPECT_TRUE(std::isnan(e_dnrm2(&two, std::vector<double>{inf, inf}.data(), &one)));
  for (const double other : {0.0, 1e-200, 1.0, 1e200}) {
    EXPECT_TRUE(std::isnan(e_dnrm2(&two, std::vector<double>{other, nan}.data(), &one)));
    EXPECT_TRUE(std::isnan(e_dnrm2(&two, std::vector<double>{nan, other}.data(), &one)));
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
  const double scaled = x * std::sqrt(static_cast<double>(n));
  ASSERT_FALSE(same_bits(std::sqrt(sum), scaled));
  EXPECT_TRUE(same_bits(std::sqrt(sum), e_dnrm2(&n, &x, &again)));
}

struct Rotation {
  double a, b, c = nan, s = nan;
  Rotation(double a_in, double b_in) : a(a_in), b(b_in) { e_drotg(&a, &b, &c, &s); }
};

// b, which of the three reconstructions applies, and c and s from it.
void expect_reconstruction(const Rotation& r) {
  const double rest = std::sqrt(std::fabs(r.b) < 1 ? 1 - r.b * r.b : 1 - 1 / (r.b * r.b));
  const double c = r.b == 1 ? 0 : std::fabs(r.b) < 1 ? rest : 1 / r.b;
  const double s = r.b == 1 ? 1 : std::fabs(r.b) < 1 ? r.b : rest;
  EXPECT_NEAR(c, r.c, 1e-13);
  EXPECT_NEAR(s, r.s, 1e-13);
}

TEST(PlaneRotation, AnnihilatesTheSecondComponent) {
  Random random(32);
  for (int trial = 0; trial < 20000; ++trial) {
    const double scale = std::ldexp(1.0, random.integer(-900, 900));
    const double a = scale * random.uniform();
    const double b = scale * std::ldexp(random.uniform(), random.integer(-5, 5));
    const Rotation r(a, b);
    const bool a_leads = std::fabs(a) > std::fabs(b);
    const double exact =
        static_cast<double>(std::sqrt(static_cast<long double>(a) * a + static_cast<long double>(b) * b));
    EXPECT_NEAR(std::fabs(r.a) / exact, 1, 1e-15);
    EXPECT_EQ(std::signbit(r.a), std::signbit(a_leads ? a : b));
    EXPECT_GT(a_leads ? r.c : r.s, 0);
    EXPECT_NEAR(r.c * r.c + r.s * r.s, 1, 2e-15);
    EXPECT_NEAR((r.c * b - r.s * a) / exact, 0, 1e-15);
    expect_reconstruction(r);
    // The stated steps, each rounded: the larger component first.
    const double large = a_leads ? a : b;
    const double v = (a_leads ? b : a) / (2 * large);
    volatile const double square = v * v;
    const double length = std::sqrt(0.25 + square) * (2 * large);
    const double leading = large / length;
    const double trailing = v * (2 * leading);
    ASSERT_TRUE(same_bits(r.a, length) && same_bits(a_leads ? r.c : r.s, leading));
    ASSERT_TRUE(same_bits(a_leads ? r.s : r.c, trailing));
  }
}

void expect_rotation(double a, double b, double r, double z, double c, double s) {
  const Rotation got(a, b);
  EXPECT_TRUE(same_bits(got.a, r) && same_bits(got.b, z) && same_bits(got.c, c) && same_bits(got.s, s))
      << a << " " << b << " gave " << got.a << " " << got.b << " " << got.c << " " << got.s;
}

TEST(PlaneRotation, ExactCases) {
  expect_rotation(0, 0, 0, 0, 1, 0);
  expect_rotation(-0.0, 0, -0.0, 0, 1, 0);
  expect_rotation(0, 2, 2, 1, 0, 1);
  expect_rotation(2, 0, 2, 0, 1, 0);
  expect_rotation(-3, 0, -3, -0.0, 1, -0.0);
  expect_rotation(0, -4, -4, 1, -0.0, 1);
  expect_rotation(1e300, 0, 1e300, 0, 1, 0);
}

}  // namespace
}  // namespace zortest
