// SPDX-License-Identifier: MIT
// easlff_nt against an elimination that takes the stated steps one element at a time, bit for bit: large fronts with
// refused pivots around the blocks, running minimum and thresholds; counts and bounds beyond their numbers' digits.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "ZORTAVFactorization.h"
#include "algorithms/front_oracle.h"
#include "support/numbers.h"

namespace {

using zortest::Guarded;
using zortest::nan;
using zortest::Random;
using zortest::front::Front;
using Sizes = std::vector<std::size_t>;

Front definite_front(Random& random, std::size_t n, std::size_t m) {
  Front f{.n = n, .m = m, .a = random.vector(n * (n + 1) / 2)};
  f.neq = random.integer(0, 3);
  f.npiv = random.integer(0, 9);
  f.d0.assign(n + 4, 1e300);  // the entries of other calls' equations
  // Large enough off the diagonal that a sum in another order shows in the bits. What is not eliminated may be of any
  // size: the last diagonals are made small, so that their updates are seen.
  const double root = std::sqrt(static_cast<double>(n));
  for (std::size_t j = 1; j <= n; ++j) {
    f.at(j, j) = j > m ? f.at(j, j) : 1.5 * root + 1 + f.at(j, j);
    f.initial(j) = f.at(j, j);
    for (std::size_t i = std::max(j, m) + 1; j <= m && i <= n; ++i) {
      f.at(i, j) *= root;
    }
  }
  return f;
}

void expect_stated_bits(Front f, std::size_t offset, int32_t status) {
  Guarded<double> a(f.a, offset);
  Front want = f;
  want.eliminate_one_by_one();
  ASSERT_EQ(want.istat, status) << "the front does not do what it was made for";
  f.eliminate(a);
  EXPECT_EQ(f.result, want.result);
  EXPECT_EQ(f.istat, want.istat);
  EXPECT_EQ(f.neq, want.neq);
  EXPECT_EQ(f.npiv, want.npiv);
  EXPECT_TRUE(zortest::same_bits(f.rmin, want.rmin)) << f.rmin << " for " << want.rmin;
  zortest::expect_same_bits(want.a, a.values());
}

// Makes pivot q of the front vanish but for rounding, or its ratio fall to the threshold.
Front refused_at(Front f, std::size_t q, int32_t status) {
  if (status == 34) {
    f.initial(q) = 1e15;
  } else {
    Front eliminated = f;
    eliminated.tolp = eliminated.tolr = 0;
    eliminated.eliminate_one_by_one();
    f.at(q, q) -= eliminated.at(q, q);
  }
  return f;
}

// Whole, and refused at the last pivot and every `step` pivots before it, by either test in turn.
void expect_stated_bits_of(Random& random, std::size_t n, std::size_t m, std::size_t step) {
  SCOPED_TRACE(testing::Message() << "n " << n << " m " << m);
  const Front good = definite_front(random, n, m);
  expect_stated_bits(good, (n + m) % 4, 0);
  for (std::size_t q = m; q >= 1; q -= std::min(q, step)) {
    SCOPED_TRACE(testing::Message() << "refused at " << q);
    const int32_t status = q % 2 == 0 ? 6 : 34;
    expect_stated_bits(refused_at(good, q, status), q % 3, status);
  }
}

TEST(EaslffNt, GivesTheStatedBitsAroundTheBlocksOfPivotsRowsAndColumns) {
  Random random(52);
  for (const std::size_t n : Sizes{25, 33, 48, 49, 50, 51, 52, 63, 64, 65, 66, 70, 97, 100, 131}) {
    for (std::size_t m = n % 3; m <= n; m += n < 40 ? 1 : 5) {
      expect_stated_bits_of(random, n, m, 40);
    }
  }
  // every position within the longest panel, in the first of two panels and in the second
  for (const std::size_t m : Sizes{107, 108, 109, 133}) {
    expect_stated_bits_of(random, m + 2, m, 1);
  }
  for (const std::size_t m : Sizes{46, 47, 48, 49, 95, 96, 97, 98, 106, 110, 111, 193}) {
    for (const std::size_t trailing : Sizes{0, 1, 2, 70, 71}) {
      expect_stated_bits_of(random, m + trailing, m, 23);
    }
  }
  // the last diagonal of an odd trailing order, which only the pivot left over from the blocks of three changes
  for (int trial = 0; trial < 20; ++trial) {
    Front f = definite_front(random, 25, 4);
    f.at(25, 1) = f.at(25, 2) = f.at(25, 3) = f.at(25, 25) = 0;
    expect_stated_bits(f, 0, 0);
  }
  // around the rows below that are taken at once
  for (const std::size_t trailing : Sizes{295, 296, 297, 303, 304, 313, 336, 337, 380}) {
    expect_stated_bits_of(random, 108 + trailing, 108, 108);
    expect_stated_bits_of(random, 97 + trailing, 97, 97);
  }
  for (const std::size_t trailing : Sizes{1360, 1365, 1366, 1370}) {
    expect_stated_bits_of(random, 22 + trailing, 22, 22);
  }
}

TEST(EaslffNt, RunningMinimumOfTheRatios) {
  Random random(53);
  Front f = definite_front(random, 9, 9);
  f.rmin = nan;  // replaced by the first ratio
  expect_stated_bits(f, 0, 0);
  f.rmin = -5;  // only ever lowered
  expect_stated_bits(f, 0, 0);
  f.rmin = 0.5;
  f.initial(5) = nan;  // a ratio that is no number passes, and is replaced
  expect_stated_bits(f, 0, 0);
  f.initial(9) = nan;
  expect_stated_bits(f, 0, 0);
  f.initial(3) = -0.0;  // ratio minus infinity
  expect_stated_bits(f, 0, 34);

  f = definite_front(random, 60, 55);
  f.at(30, 7) = nan;
  expect_stated_bits(f, 0, 0);

  // The smallest values that the thresholds refuse and accept; a pivot that is refused by itself raises the minimum.
  const Front one{.n = 1, .m = 1, .a = {4.0}, .d0 = {2.0}, .rmin = -1};
  for (const double tolp : {4.0, std::nextafter(4.0, 5.0)}) {
    for (const double tolr : {2.0, std::nextafter(2.0, 0.0)}) {
      f = one;
      f.tolp = tolp;
      f.tolr = tolr;
      expect_stated_bits(f, 0, tolp > 4.0 ? 6 : tolr < 2.0 ? 0 : 34);
    }
  }
  f.a[0] = -4.0;
  expect_stated_bits(f, 0, 6);
}

TEST(EaslffNt, CountsOperationsWhateverTheOutcome) {
  for (const int64_t n : {0, 300, 4999}) {
    const int64_t m = std::min<int64_t>(n, 9);
    const int64_t p = m * (m + 1);
    const int64_t first = 2 * m * n - m * m + (n * n + 2) * m - (2 * n + 1) * p / 2 + (2 * m + 1) * p / 6;
    const int64_t second = (n * m - p / 2) * 4 + m;
    Guarded<double> zeros(std::vector<double>(static_cast<std::size_t>(n * (m + 1))), 0);  // the columns looked at
    Front f{.n = static_cast<std::size_t>(n), .m = static_cast<std::size_t>(m), .d0 = {1.0}};
    f.flop1 = 0x1p24F + 2;  // added in single precision, each step rounded
    f.flop2 = 0.5F;
    f.eliminate(zeros);
    EXPECT_EQ(f.flop1, (0x1p24F + 2) + static_cast<float>(first));
    EXPECT_EQ(f.flop2, 0.5F + static_cast<float>(second));
    EXPECT_EQ(f.istat, m == 0 ? 0 : 6);
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
    std::vector<double> expected(w.n * 97, 5.0);
    expected[0] = 0;
    Guarded<double> a(expected, 0);
    std::fill_n(expected.begin(), w.cleared, 0.0);
    Front f{.n = w.n, .m = w.m, .d0 = {1.0}};
    f.eliminate(a);
    EXPECT_EQ(f.istat, 6);
    zortest::expect_same_bits(expected, a.values());
  }
}

[[gnu::noinline]] void fill_stack_with_signaling_numbers() {
  volatile double stack[1 << 14];
  for (volatile double& number : stack) {
    number = std::numeric_limits<double>::signaling_NaN();
  }
}

// A caller may have the invalid operation trapped: what is computed along in a panel that ends within a block must be
// numbers, not what the stack held.
TEST(EaslffNt, NumbersRaiseNoInvalidOperation) {
  Random random(56);
  for (const std::size_t m : Sizes{46, 47, 48, 106}) {
    Front f = definite_front(random, 131, m);
    Guarded<double> a(f.a, 0);
    fill_stack_with_signaling_numbers();
    std::feclearexcept(FE_ALL_EXCEPT);
    f.eliminate(a);
    EXPECT_EQ(f.istat, 0);
    EXPECT_EQ(std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW), 0) << "m " << m;
  }
}

}  // namespace
