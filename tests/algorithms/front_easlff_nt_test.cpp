// SPDX-License-Identifier: MIT
// easlff_nt against an elimination that takes the stated steps one element at a time on a square matrix, bit for bit,
// with a refused pivot at every position; and against what an L·D·Lᵀ elimination must satisfy.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "ZORTAVFactorization.h"
#include "support/numbers.h"

namespace {

using zortest::Guarded;
using zortest::Random;
using zortest::same_bits;

constexpr double minimum_at_start = 1e30;

struct Counts {
  double rmin = minimum_at_start;
  int32_t neq = 0;
  int32_t npiv = 0;
  int32_t istat = -1;
  int32_t result = -1;
};

// Element (i, j), i >= j, indices from 1, of the lower triangle packed by columns.
std::size_t place(std::size_t n, std::size_t i, std::size_t j) {
  return (j - 1) * n - (j - 1) * j / 2 + i - 1;
}

class Oracle {
 public:
  Oracle(std::size_t n, std::size_t m, std::vector<double>& a, const std::vector<double>& d0, double tolp, double tolr,
         Counts& counts)
      : n_(n), m_(m), a_(a), d0_(d0), tolp_(tolp), tolr_(tolr), counts_(counts) {}

  int32_t run() {
    counts_.istat = 0;
    for (std::size_t k = 1; k <= m_;) {
      const std::size_t pivots = std::min<std::size_t>(3, m_ - k + 1);
      if (!block(k, pivots)) {
        return 1;
      }
      k += pivots;
    }
    return 0;
  }

 private:
  double& at(std::size_t i, std::size_t j) { return a_[place(n_, i, j)]; }

  bool accepted(std::size_t k) {
    ++counts_.neq;
    double& a = at(k, k);
    double left = a;
    if (tolp_ > std::abs(a)) {
      counts_.istat = 6;
      counts_.rmin = a;
    } else {
      const double r = a / d0_[static_cast<std::size_t>(counts_.neq - 1)];
      if (r < counts_.rmin || std::isnan(counts_.rmin) || std::isnan(r)) {
        counts_.rmin = r;
      }
      if (!(tolr_ >= r)) {
        ++counts_.npiv;
        return true;
      }
      counts_.istat = 34;
      left = r;
    }
    const std::size_t bound = n_ * m_ - m_ * (m_ + 1) / 2;
    for (std::size_t p = place(n_, k, k) + 1; p < bound; ++p) {
      a_[p] = 0;
    }
    a = left;
    return false;
  }

  bool block(std::size_t k, std::size_t pivots) {
    double u1 = 0;
    double u2 = 0;
    double t = 0;
    double d[3] = {0, 0, 0};
    double r[3] = {0, 0, 0};
    for (std::size_t p = 0; p < pivots; ++p) {
      if (p == 1) {
        u1 = at(k + 1, k);
        at(k + 1, k) = u1 * r[0];
        at(k + 1, k + 1) = at(k + 1, k + 1) - at(k + 1, k) * u1;
      }
      if (p == 2) {
        u2 = at(k + 2, k);
        at(k + 2, k) = u2 * r[0];
        t = at(k + 2, k + 1) - at(k + 2, k) * u1;
        at(k + 2, k + 1) = t * r[1];
        at(k + 2, k + 2) = at(k + 2, k + 2) - u2 * at(k + 2, k);
        at(k + 2, k + 2) = at(k + 2, k + 2) - t * at(k + 2, k + 1);
      }
      if (!accepted(k + p)) {
        return false;
      }
      d[p] = at(k + p, k + p);
      r[p] = 1 / d[p];
    }
    const std::size_t first = k + pivots;
    for (std::size_t i = first; i <= n_; ++i) {
      at(i, k) = at(i, k) * r[0];
      if (pivots >= 2) {
        at(i, k + 1) = (at(i, k + 1) - at(i, k) * u1) * r[1];
      }
      if (pivots == 3) {
        at(i, k + 2) = (at(i, k + 2) - u2 * at(i, k) - at(i, k + 1) * t) * r[2];
      }
    }
    for (std::size_t c = first; c <= n_; ++c) {
      for (std::size_t i = c; i <= n_; ++i) {
        const bool own_step = pivots < 3 && c == n_ && (n_ - first + 1) % 2 == 1;
        for (std::size_t p = k; p < first; ++p) {
          const double dp = d[p - k];
          at(i, c) = own_step ? at(i, c) - at(c, p) * at(c, p) * dp : at(i, c) + at(i, p) * -(at(c, p) * dp);
        }
      }
    }
    return true;
  }

  std::size_t n_, m_;
  std::vector<double>& a_;
  const std::vector<double>& d0_;
  double tolp_, tolr_;
  Counts& counts_;
};

struct Case {
  std::size_t n = 0;
  std::size_t m = 0;
  std::vector<double> a;
  std::vector<double> d0 = {};
  double tolp = 1e-9;
  double tolr = 1e-9;
  Counts start = {};
};

Case definite_case(Random& random, std::size_t n, std::size_t m) {
  Case c{.n = n, .m = m, .a = random.vector(n * (n + 1) / 2), .d0 = {}};
  c.start.neq = random.integer(0, 3);
  c.start.npiv = random.integer(0, 9);
  c.d0.assign(n + 4, 1e300);  // the entries of other calls' equations
  // Large enough off the diagonal that a sum in another order shows in the bits. What is not eliminated may be of any
  // size: the last diagonals are made small, so that their updates are seen.
  const double root = std::sqrt(static_cast<double>(n));
  for (std::size_t j = 1; j <= n; ++j) {
    double& diagonal = c.a[place(n, j, j)];
    diagonal = j > m ? diagonal : 1.5 * root + 1 + diagonal;
    c.d0[static_cast<std::size_t>(c.start.neq) + j - 1] = diagonal;
    for (std::size_t i = std::max(j, m) + 1; j <= m && i <= n; ++i) {
      c.a[place(n, i, j)] *= root;
    }
  }
  return c;
}

Counts call(const Case& c, Guarded<double>& a) {
  Counts got = c.start;
  const auto n = static_cast<int32_t>(c.n);
  const auto m = static_cast<int32_t>(c.m);
  float flop1 = 0;
  float flop2 = 0;
  got.result = easlff_nt(&n, &m, a.data(), &got.rmin, c.d0.data(), &c.tolp, &c.tolr, &got.neq, &got.npiv, &flop1,
                         &flop2, &got.istat);
  return got;
}

void expect_as_oracle(const Case& c, std::size_t offset, int32_t status) {
  std::vector<double> expected = c.a;
  Counts want = c.start;
  want.result = Oracle(c.n, c.m, expected, c.d0, c.tolp, c.tolr, want).run();
  ASSERT_EQ(want.istat, status) << "the case does not do what it was made for";
  Guarded<double> a(c.a, offset);
  const Counts got = call(c, a);
  EXPECT_EQ(got.result, want.result);
  EXPECT_EQ(got.istat, want.istat);
  EXPECT_EQ(got.neq, want.neq);
  EXPECT_EQ(got.npiv, want.npiv);
  EXPECT_TRUE(same_bits(got.rmin, want.rmin)) << got.rmin << " for " << want.rmin;
  zortest::expect_same_bits(expected, a.values());
  EXPECT_TRUE(a.intact());
}

// Makes pivot q of the case vanish but for rounding, or its ratio fall to the threshold.
Case refused_at(const Case& good, std::size_t q, int32_t status) {
  Case bad = good;
  if (status == 34) {
    bad.d0[static_cast<std::size_t>(bad.start.neq) + q - 1] = 1e15;
    return bad;
  }
  std::vector<double> eliminated = good.a;
  Counts counts = good.start;
  Oracle(good.n, good.m, eliminated, good.d0, 0, 0, counts).run();
  bad.a[place(good.n, q, q)] -= eliminated[place(good.n, q, q)];
  return bad;
}

TEST(EaslffNt, GivesTheStatedBitsAndRefusesAtEveryPosition) {
  Random random(51);
  for (std::size_t n = 1; n <= 14; ++n) {
    for (std::size_t m = 0; m <= n; ++m) {
      SCOPED_TRACE(testing::Message() << "n " << n << " m " << m);
      const Case good = definite_case(random, n, m);
      expect_as_oracle(good, (n + m) % 4, 0);
      for (std::size_t q = 1; q <= m; ++q) {
        SCOPED_TRACE(testing::Message() << "refused at " << q);
        expect_as_oracle(refused_at(good, q, 6), q % 3, 6);
        expect_as_oracle(refused_at(good, q, 34), q % 2, 34);
      }
    }
  }
}

TEST(EaslffNt, GivesTheStatedBitsAroundTheBlocksOfPivotsRowsAndColumns) {
  Random random(52);
  for (const std::size_t n :
       std::vector<std::size_t>{15, 16, 17, 31, 33, 47, 48, 49, 50, 51, 52, 63, 64, 65, 66, 70, 97, 100, 131}) {
    for (std::size_t m = n % 3; m <= n; m += n < 40 ? 1 : 5) {
      SCOPED_TRACE(testing::Message() << "n " << n << " m " << m);
      expect_as_oracle(definite_case(random, n, m), m % 4, 0);
    }
  }
  for (const std::size_t m : std::vector<std::size_t>{46, 47, 48, 49, 50, 51, 96, 97, 98, 101}) {
    for (const std::size_t more : std::vector<std::size_t>{0, 1, 2, 70, 71}) {
      const std::size_t n = m + more;
      SCOPED_TRACE(testing::Message() << "n " << n << " m " << m);
      const Case good = definite_case(random, n, m);
      expect_as_oracle(good, 1, 0);
      for (std::size_t q = m; q >= 1; q -= std::min<std::size_t>(q, 7)) {
        SCOPED_TRACE(testing::Message() << "refused at " << q);
        expect_as_oracle(refused_at(good, q, q % 2 == 0 ? 6 : 34), 1, q % 2 == 0 ? 6 : 34);
      }
    }
  }
}

TEST(EaslffNt, GivesTheStatedBitsOnFrontsOfManyColumns) {
  Random random(55);
  for (const std::size_t m : std::vector<std::size_t>{11, 12, 14, 25, 70}) {
    for (const std::size_t trailing : std::vector<std::size_t>{190, 191, 192, 193, 207, 400}) {
      const std::size_t n = m + trailing;
      SCOPED_TRACE(testing::Message() << "n " << n << " m " << m);
      const Case good = definite_case(random, n, m);
      expect_as_oracle(good, m % 3, 0);
      expect_as_oracle(refused_at(good, m - trailing % 4, 6), 1, 6);
    }
  }
}

TEST(EaslffNt, RunningMinimumOfTheRatios) {
  Random random(53);
  Case c = definite_case(random, 9, 9);
  c.start.rmin = zortest::nan;  // replaced by the first ratio
  expect_as_oracle(c, 0, 0);
  c.start.rmin = -5;  // only ever lowered
  expect_as_oracle(c, 0, 0);
  c.start.rmin = 0.5;
  c.d0[static_cast<std::size_t>(c.start.neq) + 4] = zortest::nan;  // a ratio that is no number passes, and is replaced
  expect_as_oracle(c, 0, 0);
  c.d0[static_cast<std::size_t>(c.start.neq) + 8] = zortest::nan;
  expect_as_oracle(c, 0, 0);
  c.d0[static_cast<std::size_t>(c.start.neq) + 2] = -0.0;  // ratio minus infinity
  expect_as_oracle(c, 0, 34);

  Case not_a_number = definite_case(random, 60, 55);
  not_a_number.a[place(60, 30, 7)] = zortest::nan;
  expect_as_oracle(not_a_number, 0, 0);

  // The smallest values that the thresholds refuse and accept.
  Case one{.n = 1, .m = 1, .a = {4.0}, .d0 = {2.0}};
  one.tolr = 2.0;
  expect_as_oracle(one, 0, 34);
  one.tolr = std::nextafter(2.0, 0.0);
  one.tolp = 4.0;
  expect_as_oracle(one, 0, 0);
  one.tolp = std::nextafter(4.0, 5.0);
  one.start.rmin = -1;  // raised to the pivot itself
  expect_as_oracle(one, 0, 6);
  one.a[0] = -4.0;
  expect_as_oracle(one, 0, 6);
}

TEST(EaslffNt, CountsOperationsWhateverTheOutcome) {
  for (const int32_t n : {0, 1, 2, 7, 300, 3333, 4999}) {
    for (int32_t m = 0; m <= std::min(n, 9); ++m) {
      const int64_t rows = n;
      const int64_t columns = m;
      const int64_t p = columns * (columns + 1);
      const int64_t first = 2 * columns * rows - columns * columns + (rows * rows + 2) * columns -
                            (2 * rows + 1) * p / 2 + (2 * columns + 1) * p / 6;
      const int64_t second = (rows * columns - p / 2) * 4 + columns;
      std::vector<double> a(static_cast<std::size_t>(n * (m + 1) + 1), 0.0);  // the columns looked at
      const std::vector<double> d0(static_cast<std::size_t>(n + 1), 1.0);
      double rmin = 3;
      const double tol = 1e-3;
      int32_t neq = 0;
      int32_t npiv = 0;
      int32_t istat = 99;
      float flop1 = 0x1p24F + 2;  // added in single precision, each step rounded
      float flop2 = 0.5F;
      const int32_t result =
          easlff_nt(&n, &m, a.data(), &rmin, d0.data(), &tol, &tol, &neq, &npiv, &flop1, &flop2, &istat);
      EXPECT_EQ(flop1, (0x1p24F + 2) + static_cast<float>(first));
      EXPECT_EQ(flop2, 0.5F + static_cast<float>(second));
      EXPECT_EQ(result, m == 0 ? 0 : 1);
      EXPECT_EQ(istat, m == 0 ? 0 : 6);
      EXPECT_EQ(rmin, m == 0 ? 3 : 0);
      EXPECT_EQ(neq, m == 0 ? 0 : 1);
      EXPECT_EQ(npiv, 0);
    }
  }
}

// The bound of the clearing is a 32-bit number: for large fronts it wraps. A first pivot that is refused changes
// nothing but the cleared positions, and the columns behind the first few are not looked at: they need not be there.
TEST(EaslffNt, ClearingBoundWrapsAsA32BitNumber) {
  struct Wrapped {
    std::size_t n, m, cleared;
  };
  // m(m+1) wraps to -32117906 and is halved toward zero, n·m wraps to -16056566: 2387 remains of 2147486035.
  // n·m - m(m+1)/2 = 2170079030 wraps to a negative number: nothing is cleared.
  for (const Wrapped& w : {Wrapped{65537, 65290, 2387}, Wrapped{70000, 46340, 0}}) {
    Guarded<double> a(std::vector<double>(w.n * 49, 5.0), 0);
    a[0] = 0;
    Case c{.n = w.n, .m = w.m, .a = {}, .d0 = {1.0}};
    EXPECT_EQ(call(c, a).istat, 6);
    for (std::size_t p = 1; p < a.size(); ++p) {
      ASSERT_EQ(a[p], p < w.cleared ? 0.0 : 5.0) << "n " << w.n << " m " << w.m << " position " << p;
    }
  }
}

[[gnu::noinline]] void fill_stack_with_signaling_numbers() {
  volatile double stack[1 << 14];
  for (volatile double& place : stack) {
    place = std::numeric_limits<double>::signaling_NaN();
  }
}

// A caller may have the invalid operation trapped: what is computed along in a panel that ends within a block must be
// numbers, not what the stack held.
TEST(EaslffNt, NumbersRaiseNoInvalidOperation) {
  Random random(56);
  for (const std::size_t m : std::vector<std::size_t>{46, 47, 48}) {
    const Case c = definite_case(random, 131, m);
    Guarded<double> a(c.a, 0);
    fill_stack_with_signaling_numbers();
    std::feclearexcept(FE_ALL_EXCEPT);
    EXPECT_EQ(call(c, a).istat, 0);
    EXPECT_EQ(std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW), 0) << "m " << m;
  }
}

// L·D·Lᵀ of the eliminated columns plus the trailing triangle gives the front back, and a full elimination counts the
// negative eigenvalues (Sylvester's law of inertia).
TEST(EaslffNt, RestoresTheFrontAndItsInertia) {
  Random random(54);
  const std::size_t n = 240;
  for (const std::size_t m : {std::size_t{100}, std::size_t{240}}) {
    Case c = definite_case(random, n, m);
    std::size_t negative = 0;
    for (std::size_t j = 1; j <= n; ++j) {
      // diagonally dominant among the eliminated equations: a negative diagonal is a negative eigenvalue
      const bool flip = random.integer(0, 2) == 0;
      const double diagonal = static_cast<double>(n) * random.uniform(1, 2);
      c.a[place(n, j, j)] = flip ? -diagonal : diagonal;
      c.d0[static_cast<std::size_t>(c.start.neq) + j - 1] = flip ? -1 : 1;
      negative += flip && j <= m ? 1 : 0;
    }
    Guarded<double> a(c.a, 1);
    ASSERT_EQ(call(c, a).result, 0);
    EXPECT_TRUE(a.intact());
    std::size_t found = 0;
    for (std::size_t i = 1; i <= n; ++i) {
      found += i <= m && a[place(n, i, i)] < 0 ? 1 : 0;
      for (std::size_t j = 1; j <= i; ++j) {
        double sum = j > m ? a[place(n, i, j)] : 0;
        double magnitude = std::abs(sum);
        for (std::size_t k = 1; k <= std::min(j, m); ++k) {
          const double li = i == k ? 1 : a[place(n, i, k)];
          const double lj = j == k ? 1 : a[place(n, j, k)];
          sum += li * a[place(n, k, k)] * lj;
          magnitude += std::abs(li * a[place(n, k, k)] * lj);
        }
        ASSERT_NEAR(sum, c.a[place(n, i, j)], 4 * static_cast<double>(n) * 0x1p-53 * magnitude) << i << " " << j;
      }
    }
    EXPECT_EQ(found, negative);
  }
}

}  // namespace
