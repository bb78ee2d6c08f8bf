// SPDX-License-Identifier: MIT
// Each stage of the eigen-solver by itself: bit for bit against plain loops, and its odd rules.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "ZORTAVEigenSolver.h"
#include "algorithms/eigen_oracle.h"
#include "support/numbers.h"

namespace {

using zortest::expect_same_bits;
using zortest::Guarded;
using zortest::Random;
using Numbers = std::vector<double>;

std::size_t size(int n) {
  return static_cast<std::size_t>(n);
}
std::size_t packed(int n) {
  return size(n) * (size(n) + 1) / 2;
}

std::vector<int> orders() {
  std::vector<int> n;
  for (int i = 1; i <= 40; ++i) {
    n.push_back(i);
  }
  n.insert(n.end(), {63, 64, 65, 71, 127, 128, 129, 200});
  return n;
}

void check_reduction(int n, Numbers a, std::size_t offset) {
  Guarded<double> actual_a(a, offset);
  Guarded<double> actual_d(size(n), offset);
  Guarded<double> actual_e(size(n), offset);
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
  for (const int n : orders()) {
    SCOPED_TRACE(n);
    for (std::size_t offset = 0; offset < 2; ++offset) {
      check_reduction(n, random.vector(packed(n)), offset);
    }
  }
}

TEST(eaxetr, steps_over_rows_without_a_reflector) {
  Random random(4302);
  for (const int n : {3, 4, 9, 17, 40}) {
    for (int pattern = 1; pattern < 8; ++pattern) {
      SCOPED_TRACE(testing::Message() << "n " << n << ", pattern " << pattern);
      Numbers a = random.vector(packed(n));
      const oracle::Triangle at{a};
      // Every block of three rows has some of its rows decoupled from what stands before the block.
      for (int i = 1; i <= n; ++i) {
        for (int j = 1; j < i; ++j) {
          if ((pattern >> (i % 3) & 1) != 0) {
            at(i, j) = 0.0;
          }
        }
      }
      check_reduction(n, a, 0);
    }
  }
}

TEST(eaxetr, does_not_scale_a_row_whose_squares_vanish) {
  const int n = 3;
  Numbers a{4.0, 1.0, 5.0, 1e-200, -2e-200, 6.0};
  Numbers d(3, -1.0);
  Numbers e(3, -1.0);
  eaxetr(&n, a.data(), d.data(), e.data());
  expect_same_bits({4.0, 5.0, 6.0}, d);
  expect_same_bits({0.0, 1.0, -2e-200}, e);
  expect_same_bits({4.0, 1.0, 5.0, 1e-200, -2e-200, 0.0}, a);
}

TEST(eaxetr, keeps_the_reflector_and_its_scale_in_the_row) {
  // Row 3 is (3, 4): h = 25, g = -5, u = (3, 9), scale 25 + 20 = 45; for f < 0 the sign turns.
  const int n = 3;
  for (const double sign : {1.0, -1.0}) {
    Numbers a{1.0, 0.0, 1.0, 3.0, 4.0 * sign, 7.0};
    Numbers d(3);
    Numbers e(3);
    eaxetr(&n, a.data(), d.data(), e.data());
    EXPECT_EQ(-5.0 * sign, e[2]);
    EXPECT_EQ(7.0, d[2]);
    EXPECT_EQ(3.0, a[3]);
    EXPECT_EQ(9.0 * sign, a[4]);
    EXPECT_EQ(45.0, a[5]);
  }
  // f = 0 counts as positive, also with a minus sign.
  Numbers a{1.0, 0.0, 1.0, 2.0, -0.0, 7.0};
  Numbers d(3);
  Numbers e(3);
  eaxetr(&n, a.data(), d.data(), e.data());
  EXPECT_EQ(-2.0, e[2]);
}

TEST(eaxetr, below_two_copies_one_element) {
  for (const int n : {1, 0, -3}) {
    Numbers a{7.5};
    Guarded<double> d(1);
    Guarded<double> e(1);
    eaxetr(&n, a.data(), d.data(), e.data());
    EXPECT_EQ(7.5, d[0]);
    EXPECT_EQ(0.0, e[0]);
    EXPECT_EQ(7.5, a[0]);
    EXPECT_TRUE(d.intact() && e.intact());
  }
}

void check_iteration(int n, Numbers d, Numbers e, Numbers v, std::size_t offset) {
  Guarded<double> actual_d(d, offset);
  Guarded<double> actual_e(e, offset);
  Guarded<double> actual_v(v, offset);
  int32_t ierr = -77;
  const int32_t result = eaxeql(&n, actual_d.data(), actual_e.data(), actual_v.data(), &ierr);
  const int failed = oracle::iterate(n, d, e, v);
  EXPECT_EQ(failed == 0 ? 0 : 1, result);
  EXPECT_EQ(failed == 0 ? -77 : failed, ierr);
  expect_same_bits(d, actual_d.values());
  expect_same_bits(e, actual_e.values());
  expect_same_bits(v, actual_v.values());
  EXPECT_TRUE(actual_d.intact() && actual_e.intact() && actual_v.intact());
}

TEST(eaxeql, is_the_plain_loop_bit_for_bit) {
  Random random(4303);
  for (const int n : orders()) {
    SCOPED_TRACE(n);
    check_iteration(n, random.vector(size(n)), random.vector(size(n)), Numbers(size(n) * size(n)), 0);
    // Rows off the diagonal need not be zero: V is multiplied whatever it holds.
    check_iteration(n, random.vector(size(n)), random.vector(size(n)), random.vector(size(n) * size(n)), 1);
  }
}

TEST(eaxeql, splits_where_the_sub_diagonal_is_lost) {
  Random random(4304);
  for (const int n : {5, 30, 77}) {
    SCOPED_TRACE(n);
    Numbers e = random.vector(size(n));
    for (std::size_t i = 0; i < e.size(); i += 1 + i % 7) {
      e[i] *= random.integer(0, 1) != 0 ? 0.0 : 1e-17;
    }
    check_iteration(n, random.vector(size(n), 0.5, 1.0), e, random.vector(size(n) * size(n)), 0);
  }
}

TEST(eaxeql, tests_convergence_by_exact_equality) {
  // Half a unit in the last place of dd = 2 is lost beside it, the next larger number is not.
  const int n = 2;
  const double half_unit = 0x1p-52;
  for (const double factor : {1.0, 1.0 + 0x1p-52}) {
    Numbers d{1.0, 1.0};
    Numbers e{9.0, half_unit * factor};
    Numbers v(4);
    int32_t ierr = 0;
    ASSERT_EQ(0, eaxeql(&n, d.data(), e.data(), v.data(), &ierr));
    const bool rotated = v[1] != 0.0;
    EXPECT_EQ(factor > 1.0, rotated);
  }
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
    check_iteration(n, d, e, random.vector(size(n) * size(n)), 0);
  }
  // Hundreds of sweeps over one plane each.
  const int n = 1001;
  Numbers e = random.vector(size(n));
  for (std::size_t i = 0; i < e.size(); i += 2) {
    e[i] = 0.0;
  }
  check_iteration(n, random.vector(size(n)), e, random.vector(size(n) * size(n)), 1);
}

TEST(eaxeql, sweeps_too_far_apart_for_one_panel) {
  // Two pairs of planes, at both ends of an order beyond the columns that a panel of rows holds.
  Random random(4308);
  const int n = 2700;
  Numbers e(size(n));
  e[1] = e[2] = e[size(n) - 2] = e[size(n) - 1] = 0.5;
  check_iteration(n, random.vector(size(n)), e, random.vector(size(n) * size(n)), 0);
}

TEST(eaxeql, gives_up_after_thirty_iterations) {
  // The leading block of two converges; what follows it holds a NaN and never does.
  Random random(4306);
  for (const int n : {4, 12, 50}) {
    SCOPED_TRACE(n);
    Numbers e(size(n), 0.25);
    e[2] = 0.0;
    Numbers d = random.vector(size(n), 1.0, 2.0);
    d.back() = zortest::nan;
    const Numbers v = random.vector(size(n) * size(n));
    check_iteration(n, d, e, v, 0);
    Numbers actual_v = v;
    int32_t ierr = -77;
    EXPECT_EQ(1, eaxeql(&n, d.data(), e.data(), actual_v.data(), &ierr));
    EXPECT_EQ(3, ierr);
  }
  // Infinite coupling: not a number from the first shift on.
  check_iteration(4, {1, 2, 3, 4}, {0, 1, zortest::inf, 1}, random.vector(16), 0);
}

TEST(eaxeql, has_no_guard_against_a_rotation_of_length_zero) {
  const int n = 4;
  // In the first sweep f = g = 0 in one plane, and the quotient of zeros spreads.
  for (const Numbers& d : {Numbers{1e-160, 1e-160, 1, 0}, Numbers{0, 0, 0, 0.5}}) {
    Numbers actual_d = d;
    Numbers e = d[0] == 0.0 ? Numbers{0, 1e-320, 1e-320, 3} : Numbers{0, 1e-160, 0.5, 3};
    Numbers v(16);
    int32_t ierr = 0;
    EXPECT_EQ(1, eaxeql(&n, actual_d.data(), e.data(), v.data(), &ierr));
    EXPECT_EQ(1, ierr);
    EXPECT_TRUE(std::isnan(actual_d[0]) && std::isnan(v[0]));
  }
}

TEST(eaxeql, below_two_touches_one_element_of_the_vectors) {
  for (const int n : {1, 0, -2}) {
    Numbers d{3.0};
    Numbers e{5.0};
    Guarded<double> v(1);
    int32_t ierr = -77;
    EXPECT_EQ(0, eaxeql(&n, d.data(), e.data(), v.data(), &ierr));
    EXPECT_EQ(3.0, d[0]);
    EXPECT_EQ(5.0, e[0]);
    EXPECT_EQ(1.0, v[0]);
    EXPECT_EQ(-77, ierr);
    EXPECT_TRUE(v.intact());
  }
}

// The order in which the pairs come out; column j of V starts as (j, 100 + j, ...).
Numbers ordered(int32_t ord, Numbers& d) {
  const int n = static_cast<int>(d.size());
  Numbers v(d.size() * d.size());
  for (std::size_t j = 0; j < d.size(); ++j) {
    for (std::size_t i = 0; i < d.size(); ++i) {
      v[i + j * d.size()] = static_cast<double>(100 * i + j);
    }
  }
  eaxeor(&ord, &n, d.data(), v.data());
  Numbers places;
  for (std::size_t j = 0; j < d.size(); ++j) {
    places.push_back(v[j * d.size()]);
    for (std::size_t i = 0; i < d.size(); ++i) {
      EXPECT_EQ(places.back() + static_cast<double>(100 * i), v[i + j * d.size()]);
    }
  }
  return places;
}

TEST(eaxeor, orders_by_value_or_by_size) {
  struct Case {
    int32_t ord;
    Numbers d;
    Numbers sorted;
    Numbers places;
  };
  const std::vector<Case> cases{
      {1, {5, -3}, {-3, 5}, {1, 0}},
      {1, {-5, 3}, {-5, 3}, {0, 1}},
      {2, {-5, 3}, {-5, 3}, {0, 1}},
      {2, {3, -5}, {-5, 3}, {1, 0}},
      {0, {1, -2, 3}, {3, -2, 1}, {2, 1, 0}},
      {-1, {1, -2, 3}, {3, -2, 1}, {2, 1, 0}},
      // The earliest of equals is chosen; the exchange carries the displaced pair behind its equals.
      {1, {2, 2, 1, 1}, {1, 1, 2, 2}, {2, 3, 0, 1}},
      {1, {2, 1, 2, 1}, {1, 1, 2, 2}, {1, 3, 2, 0}},
      {2, {1, -2, 2, -1}, {-2, 2, 1, -1}, {1, 2, 0, 3}},
      {2, {-1, 1, -1}, {-1, 1, -1}, {0, 1, 2}},
      {1, {0.0, -0.0}, {0.0, -0.0}, {0, 1}},
  };
  for (const Case& c : cases) {
    Numbers d = c.d;
    EXPECT_EQ(c.places, ordered(c.ord, d));
    expect_same_bits(c.sorted, d);
  }
}

TEST(eaxeor, nothing_is_before_or_after_a_nan) {
  for (const int32_t ord : {1, 2}) {
    Numbers d{zortest::nan, 2, 1};
    ordered(ord, d);
    expect_same_bits(ord == 1 ? Numbers{zortest::nan, 1, 2} : Numbers{zortest::nan, 2, 1}, d);
  }
}

TEST(eaxeor, below_two_touches_nothing) {
  for (const int n : {1, 0, -4}) {
    const int32_t ord = 1;
    Guarded<double> d(0);
    Guarded<double> v(0);
    eaxeor(&ord, &n, d.data(), v.data());
    EXPECT_TRUE(d.intact() && v.intact());
  }
}

TEST(eaxevp, is_the_plain_loop_bit_for_bit) {
  Random random(4307);
  std::vector<int> all_orders = orders();
  // As many reflectors as one block takes, one more, and a second block of many.
  all_orders.insert(all_orders.end(), {256, 257, 301});
  for (const int n : all_orders) {
    SCOPED_TRACE(n);
    Numbers a = random.vector(packed(n));
    const oracle::Triangle at{a};
    for (int i = 3; i <= n; ++i) {
      // Some rows carry no reflector.
      at(i, i) = i % 5 == 4 ? 0.0 : random.uniform(1.0, 3.0);
    }
    Numbers v = random.vector(size(n) * size(n));
    const std::size_t offset = size(n % 2);
    Guarded<double> actual(v, offset);
    const Guarded<double> reflectors(a, offset);
    eaxevp(&n, reflectors.data(), actual.data());
    oracle::transform_back(n, a, v);
    expect_same_bits(v, actual.values());
    expect_same_bits(a, reflectors.values());
    EXPECT_TRUE(actual.intact());
  }
}

TEST(eaxevp, rows_one_and_two_carry_no_reflector) {
  for (const int n : {2, 1, 0, -1}) {
    const Numbers a{3.0, 4.0, 5.0};
    Numbers v{1.0, 2.0, 3.0, 4.0};
    eaxevp(&n, a.data(), v.data());
    expect_same_bits({1.0, 2.0, 3.0, 4.0}, v);
  }
}

}  // namespace
