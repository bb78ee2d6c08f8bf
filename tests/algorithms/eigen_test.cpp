// SPDX-License-Identifier: MIT
// The stages of the eigen-solver bit for bit against plain loops, where the differential test does not hold them to
// their bits or does not come; and that the solver is its stages.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "ZORTAVEigenSolver.h"
#include "algorithms/eigen_oracle.h"
#include "support/numbers.h"

namespace {

using oracle::Numbers;
using oracle::packed;
using oracle::size;
using zortest::expect_same_bits;
using zortest::Guarded;
using zortest::inf;
using zortest::nan;
using zortest::Random;

constexpr int orders[] = {1,  2,  3,  4,  5,  6,  7,  8,  9,  15,  16,  17,  31, 32,
                          33, 34, 40, 63, 64, 65, 71, 98, 99, 127, 128, 130, 200};

void check_reduction(int n, Numbers a, std::size_t offset) {
  Guarded<double> actual_a(a, offset), actual_d(size(n), offset), actual_e(size(n), offset);
  eaxetr(&n, actual_a.data(), actual_d.data(), actual_e.data());
  Numbers d(size(n));
  Numbers e(size(n));
  oracle::tridiagonalize(n, a, d, e);
  expect_same_bits(d, actual_d.values());
  expect_same_bits(e, actual_e.values());
  expect_same_bits(a, actual_a.values());
  EXPECT_TRUE(actual_a.intact() && actual_d.intact() && actual_e.intact());
}

TEST(eaxetr, is_the_plain_loop_bit_for_bit) {
  Random random(4301);
  for (const int n : orders) {
    // Every block of three rows has some of its rows decoupled from what stands before the block.
    for (int pattern = 0; pattern < 8; ++pattern) {
      SCOPED_TRACE(testing::Message() << "n " << n << ", pattern " << pattern);
      Numbers a = random.vector(packed(n));
      for (int i = 1; i <= n; ++i) {
        for (int j = 1; j < i && (pattern >> (i % 3) & 1) != 0; ++j) {
          oracle::Triangle{a}(i, j) = 0.0;
        }
      }
      check_reduction(n, a, size(pattern % 2));
    }
  }
  check_reduction(3, {4.0, 1.0, 5.0, 1e-200, -2e-200, 6.0}, 0);  // the squares vanish, and the row is not scaled
  check_reduction(3, {1.0, 0.0, 1.0, 2.0, -0.0, 7.0}, 0);        // f = 0 counts as positive, also with a minus sign
}

// Returns the status by the oracle.
int check_iteration(int n, Numbers d, Numbers e, Numbers v, std::size_t offset = 0) {
  Guarded<double> actual_d(d, offset), actual_e(e, offset), actual_v(v, offset);
  int32_t ierr = -77;
  const int32_t result = eaxeql(&n, actual_d.data(), actual_e.data(), actual_v.data(), &ierr);
  const int failed = oracle::iterate(n, d, e, v);
  EXPECT_EQ(failed == 0 ? 0 : 1, result);
  EXPECT_EQ(failed == 0 ? -77 : failed, ierr);
  expect_same_bits(d, actual_d.values());
  expect_same_bits(e, actual_e.values());
  expect_same_bits(v, actual_v.values());
  EXPECT_TRUE(actual_d.intact() && actual_e.intact() && actual_v.intact());
  return failed;
}

TEST(eaxeql, signs_of_zeros_and_last_places) {
  Random random(4303);
  // Zeros of V that are still untouched when the sweeps leave the last plane, or when a value settles without any: their
  // signs are those of the plain loop.
  const int n = 300;
  for (const bool last_settles : {false, true}) {
    Numbers d = random.vector(size(n));
    Numbers e = random.vector(size(n));
    if (last_settles) {
      d.back() = 1e6;
      e.back() = 1e-3;
    } else {
      e[1] = e[2] = e[20] = 0.0;
    }
    check_iteration(n, d, e, Numbers(size(n) * size(n)));
    check_iteration(n, d, e, Numbers(size(n) * size(n), -0.0));
  }
  // Half a unit in the last place of dd = 2 is lost beside it, the next larger number is not.
  check_iteration(2, {1.0, 1.0}, {9.0, 0x1p-52}, Numbers(4));
  check_iteration(2, {1.0, 1.0}, {9.0, 0x1p-52 * (1.0 + 0x1p-52)}, Numbers(4));
  check_iteration(3, {1.0, 1.0, 2.0}, {9.0, 0.5, -1.5}, Numbers(9));  // begins with a tie, f = -g
}

TEST(eaxeql, sweeps_that_outgrow_its_buffers) {
  Random random(4305);
  // A graded diagonal whose neighbours are barely not negligible: few sweeps, each over almost all planes.
  for (const int n : {900, 2100}) {
    SCOPED_TRACE(n);
    Numbers d(size(n));
    Numbers e(size(n));
    for (std::size_t i = 0; i < d.size(); ++i) {
      d[i] = std::pow(1.02, static_cast<double>(i % 1000));
    }
    for (std::size_t i = 1; i < d.size(); ++i) {
      const double dd = d[i - 1] + d[i];
      e[i] = 0.6 * (std::nextafter(dd, 2 * dd) - dd);
    }
    check_iteration(n, d, e, random.vector(size(n) * size(n)));
  }
  // Hundreds of sweeps over one plane each.
  int n = 1001;
  Numbers e = random.vector(size(n));
  for (std::size_t i = 0; i < e.size(); i += 2) {
    e[i] = 0.0;
  }
  check_iteration(n, random.vector(size(n)), e, random.vector(size(n) * size(n)), 1);
  // Two pairs of planes, at both ends of an order beyond the columns that a panel of rows holds.
  n = 2700;
  e.assign(size(n), 0.0);
  e[1] = e[2] = e[size(n) - 2] = e[size(n) - 1] = 0.5;
  check_iteration(n, random.vector(size(n)), e, random.vector(size(n) * size(n)));
}

TEST(eaxeql, gives_up_after_thirty_iterations) {
  // The leading block of two converges; what follows it holds a NaN and never does.
  Random random(4306);
  for (const int n : {4, 12, 50}) {
    Numbers d = random.vector(size(n), 1.0, 2.0);
    Numbers e(size(n), 0.25);
    d.back() = nan;
    e[2] = 0.0;
    EXPECT_EQ(3, check_iteration(n, d, e, random.vector(size(n) * size(n))));
  }
  // Too small for their last place: it keeps turning.
  const double least = 5e-324;
  EXPECT_EQ(
      1, check_iteration(3, {4 * least, 4 * least, least}, {0, -3 * least, -3 * least}, {1, 2, 3, 4, 5, 6, 7, 8, 9}));
  // Infinite coupling: not a number from the first shift on.
  EXPECT_EQ(1, check_iteration(4, {1, 2, 3, 4}, {0, 1, inf, 1}, random.vector(16)));
  // In the first sweep f = g = 0 in one plane, and the quotient of zeros spreads.
  EXPECT_EQ(1, check_iteration(4, {1e-160, 1e-160, 1, 0}, {0, 1e-160, 0.5, 3}, Numbers(16)));
  EXPECT_EQ(1, check_iteration(4, {0, 0, 0, 0.5}, {0, 1e-320, 1e-320, 3}, Numbers(16)));
}

TEST(eaxeor, carries_the_displaced_pair_behind_its_equals) {
  const int n = 4;
  const int32_t ord = 1;
  Numbers d{2, 2, 1, nan};
  Numbers v{0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3};
  eaxeor(&ord, &n, d.data(), v.data());
  expect_same_bits({1, 2, 2, nan}, d);  // nothing is before or after a NaN
  expect_same_bits({2, 2, 2, 2, 1, 1, 1, 1, 0, 0, 0, 0, 3, 3, 3, 3}, v);
}

TEST(eaxevp, applies_the_reflectors_in_blocks_bit_for_bit) {
  Random random(4307);
  for (const int n : orders) {
    SCOPED_TRACE(n);
    Numbers a = random.vector(packed(n));
    const oracle::Triangle row{a};
    for (int i = 1; i <= n; ++i) {
      // Some rows carry no reflector, among them a whole block; what they hold is not read.
      const bool none = i % 5 == 4 || (i > 66 && i <= 98);
      long double square = 0;
      for (int k = 1; k < i; ++k) {
        row(i, k) = none ? nan : row(i, k) * std::pow(2.0, n % 3 * (k % 11));
        square += static_cast<long double>(row(i, k)) * row(i, k);
      }
      row(i, i) = none ? 0.0 : static_cast<double>(square / 2);
    }
    Numbers v = random.vector(size(n) * size(n));
    Guarded<double> actual(v, size(n % 2));
    const Guarded<double> reflectors(a, size(n % 2));
    eaxevp(&n, reflectors.data(), actual.data());
    oracle::transform_back_in_blocks(n, a, v);
    expect_same_bits(v, actual.values());
    EXPECT_TRUE(actual.intact());
  }
}

// What eaxeig, or its stages with V cleared between the first two, leave in A, D, V and E.
Numbers solve(int n, const Numbers& matrix, int32_t ord, bool by_stages, int32_t failed) {
  const std::size_t offset = size(n % 3);
  Guarded<double> a(matrix, offset), d(size(n), offset), e(size(n), offset), v(Numbers(size(n) * size(n), 9.0), offset);
  int32_t result = 0;
  int32_t ierr = -77;
  if (by_stages) {
    eaxetr(&n, a.data(), d.data(), e.data());
    std::fill_n(v.data(), v.size(), 0.0);
    result = eaxeql(&n, d.data(), e.data(), v.data(), &ierr);
    if (result == 0) {
      eaxeor(&ord, &n, d.data(), v.data());
      eaxevp(&n, a.data(), v.data());
    }
  } else {
    result = eaxeig(&n, &ord, a.data(), d.data(), v.data(), e.data(), &ierr);
  }
  EXPECT_EQ(ierr, failed);
  EXPECT_EQ(result, failed == -77 ? 0 : 1);
  Numbers left;
  for (const auto* array : {&a, &d, &v, &e}) {
    EXPECT_TRUE(array->intact());
    left.insert(left.end(), array->data(), array->data() + array->size());
  }
  return left;
}

TEST(eaxeig, is_its_stages) {
  Random random(4313);
  struct Case {
    int n, ierr;
    Numbers a;
  };
  const Case cases[] = {
      {1, -77, {-6.5}},
      {2, -77, {1.0, 4.0, 1.0}},
      {11, -77, Numbers(packed(11))},
      {50, -77, random.vector(packed(50))},
      // The reflector of the last row only turns a sign, so that the NaN on the diagonal meets the fourth value alone:
      // the values before it stay unordered.
      {5, 4, {5, 0, 1, 0, 0, 7, 0, 0, 0, 2, 0, 0, 0, 4, nan}},
      // The reflector (2, 2) would exchange the first two elements of the first vector.
      {3, 2, {2, 0, 2, 2, 0, nan}},
  };
  for (const Case& c : cases) {
    for (const int32_t ord : {1, 2}) {
      SCOPED_TRACE(testing::Message() << "order " << c.n);
      expect_same_bits(solve(c.n, c.a, ord, true, c.ierr), solve(c.n, c.a, ord, false, c.ierr));
    }
  }
}

TEST(eaxeig, takes_orders_below_one_as_one_but_for_the_clearing) {
  for (const int n : {0, -2}) {
    const int32_t ord = 1;
    Guarded<double> a(Numbers{2.5}, 0), d(1), e(1), v(Numbers{9, 9, 9, 9}, 0), none(0);
    int32_t ierr = -77;
    EXPECT_EQ(0, eaxeig(&n, &ord, a.data(), d.data(), v.data(), e.data(), &ierr));
    EXPECT_EQ(-77, ierr);
    expect_same_bits({2.5, 0.0}, {d[0], e[0]});
    expect_same_bits(n == 0 ? Numbers{1, 9, 9, 9} : Numbers{1, 0, 0, 0}, v.values());
    eaxetr(&n, a.data(), d.data(), e.data());
    EXPECT_EQ(0, eaxeql(&n, d.data(), e.data(), v.data(), &ierr));
    eaxeor(&ord, &n, none.data(), none.data());
    eaxevp(&n, a.data(), none.data());
    EXPECT_TRUE(a.intact() && d.intact() && e.intact() && v.intact() && none.intact());
  }
}

}  // namespace
