// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "ZORTAVPackedSolves.h"
#include "support/numbers.h"
#include "vector_kernels/packed_solves/packed_oracle.h"

namespace zortest {
namespace {

void run(const Triangle& t, double* x, int32_t incx) {
  e_dtpsv(t.upper ? "U" : "L", t.transposed ? "T" : "N", t.unit ? "U" : "N", &t.n, t.ap.data(), x, &incx);
}

void expect_published_bits(const Triangle& t, const std::vector<double>& b, int32_t incx, std::size_t offset) {
  const std::vector<double> expected = solved(t, b);
  const auto n = static_cast<std::size_t>(t.n);
  const auto step = static_cast<std::size_t>(std::abs(incx));
  const auto place = [&](std::size_t i) { return (incx < 0 ? n - 1 - i : i) * step; };
  Guarded<double> x(1 + (n - 1) * step, offset);
  for (std::size_t i = 0; i < n; ++i) {
    x[place(i)] = b[i];
  }
  std::vector<double> after = x.values();
  for (std::size_t i = 0; i < n; ++i) {
    after[place(i)] = expected[i];
  }
  run(t, x.data(), incx);
  SCOPED_TRACE(testing::Message() << "n " << n << (t.upper ? " upper" : " lower") << (t.transposed ? " transposed" : "")
                                  << (t.unit ? " unit" : "") << " incx " << incx << " offset " << offset);
  expect_same_bits(after, x.values());
  ASSERT_TRUE(x.intact());
}

TEST(PackedTriangularSolve, SmallTriangles) {
  for (int shape = 0; shape < 4; ++shape) {
    const bool upper = (shape & 1) != 0;
    const bool transposed = (shape & 2) != 0;
    const Triangle t{upper, transposed, false, 3,
                     upper ? std::vector<double>{2, 1, 4, 3, 5, 8}    // (2 1 3; 0 4 5; 0 0 8)
                           : std::vector<double>{2, 1, 3, 4, 5, 8}};  // its transpose
    std::vector<double> x = upper != transposed ? std::vector<double>{13, 23, 24} : std::vector<double>{2, 9, 37};
    run(t, x.data(), 1);
    expect_same_bits({1, 2, 3}, x);
  }
}

TEST(PackedTriangularSolve, KeepsThePublishedOrderEverywhere) {
  Random random(24);
  for (int n = 1; n <= 133; n += n < 36 ? 1 : 7) {
    for (int shape = 0; shape < 8; ++shape) {
      const Triangle t = random_triangle(random, shape, n);
      const std::vector<double> b = random.vector(static_cast<std::size_t>(n));
      for (const int32_t incx : {1, 2, -1, -3}) {
        expect_published_bits(t, b, incx, static_cast<std::size_t>(random.integer(0, 7)));
      }
    }
  }
}

// Infinities in the column of a zero spread only in the transposed solves, whichever columns are taken together.
TEST(PackedTriangularSolve, SkipsTheColumnsOfZeros) {
  Random random(25);
  for (const int n : {7, 8, 40}) {
    for (int shape = 0; shape < 8; ++shape) {
      for (const int32_t incx : {1, 2}) {
        Triangle t = random_triangle(random, shape, n);
        std::vector<double> b = random.vector(static_cast<std::size_t>(n));
        for (int j = 1; j <= n; ++j) {
          const bool first_solved = t.upper ? j > n / 2 : j <= n / 2;
          if (first_solved || random.integer(0, 2) == 0) {
            b[static_cast<std::size_t>(j - 1)] = random.integer(0, 1) == 0 ? 0.0 : -0.0;
            if (first_solved) {
              t.ap[position(t.upper, n, t.upper ? 1 : n, j) - 1] = inf;
            }
          }
        }
        expect_published_bits(t, b, incx, 0);
      }
    }
  }
}

TEST(PackedTriangularSolve, TakesUnknownLettersForTheOtherCase) {
  Random random(26);
  const int32_t n = 20;
  const int32_t one = 1;
  for (int shape = 0; shape < 8; ++shape) {
    const Triangle t = random_triangle(random, shape, n);
    const std::vector<double> b = random.vector(n);
    const std::vector<double> expected = solved(t, b);
    for (const std::string others : {"lc1", "X\0 "}) {
      std::vector<double> x = b;
      e_dtpsv(t.upper ? "u" : others.data(), t.transposed ? others.data() + 1 : "n", t.unit ? others.data() + 2 : "n",
              &n, t.ap.data(), x.data(), &one);
      expect_same_bits(expected, x);
    }
  }
  for (const int32_t none : {0, -1, INT32_MIN}) {
    e_dtpsv("U", "N", "N", &none, nullptr, nullptr, &one);
  }
  // A diagonal of ones is all that there is: no place of ap is read.
  for (int shape = 4; shape < 8; ++shape) {
    double x = 3;
    run({(shape & 1) != 0, (shape & 2) != 0, true, 1, {}}, &x, 1);
    EXPECT_EQ(x, 3);
  }
}

}  // namespace
}  // namespace zortest
