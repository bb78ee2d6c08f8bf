// SPDX-License-Identifier: MIT
// eaxfch2 against an element-by-element oracle in the stated order of the operations, bit for bit: thresholds, numbers
// that are none, and rows too long for the routine's work space. eaxfch and Cholesky are one routine.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ZORMathematics.h"
#include "ZORTAVFactorization.h"
#include "algorithms/factor_oracle.h"
#include "support/by_address.h"
#include "support/numbers.h"

namespace {

using zortest::by_address;
using zortest::Guarded;
using zortest::nan;
using zortest::Random;
using zortest::factor::in_stated_order;
using zortest::factor::Numbers;
using zortest::factor::Outcome;
using zortest::factor::place;
using zortest::factor::positive_definite;

void expect_as_oracle(const Numbers& matrix, std::size_t n1, std::size_t n2, double tol, std::size_t offset) {
  Numbers expected = matrix;
  const Outcome want = in_stated_order(expected, n1, n2, tol);
  Guarded<double> a(matrix, offset);
  Outcome got{-1, 777};
  const int32_t unread = -5;
  by_address(eaxfch2, unread, static_cast<int32_t>(n1), static_cast<int32_t>(n2), tol, a, got.ierr, got.piv);
  EXPECT_EQ(want.ierr, got.ierr);
  EXPECT_TRUE(zortest::same_bits(want.piv, got.piv)) << want.piv << " " << got.piv;
  zortest::expect_same_bits(expected, a.values());
  EXPECT_TRUE(a.intact());
}

TEST(Eaxfch2, TolerancePivotsAndNumbersThatAreNone) {
  Random random(44);
  for (const double pivot : {4.0, std::nextafter(4.0, 5.0), -0.25, nan}) {
    const Numbers one_row{pivot};
    const Numbers three_rows{9, 3, 10, 3, 4, pivot + 2};  // the multipliers are 1
    for (const double tol : {4.0, -1.0}) {  // equal to the tolerance is refused; the root of a negative is no number
      expect_as_oracle(one_row, 1, 1, tol, 0);
      expect_as_oracle(three_rows, 1, 3, tol, 0);
    }
  }
  const Numbers matrix = positive_definite(random, 30);
  expect_as_oracle(matrix, 9, 8, 0, 0);              // no rows
  expect_as_oracle({9, 0, 9, 0, 0, 9}, 1, 3, 0, 0);  // zeros keep their sign
  for (const std::size_t i : std::vector<std::size_t>{2, 6, 13}) {
    Numbers a = matrix;
    a[place(i, i)] = nan;  // passes and spoils the rows below
    expect_as_oracle(a, 1, 30, 0, 0);
    a = matrix;
    in_stated_order(a, 1, 16, 0);
    a[place(i, i)] = 0;  // a zero in the supplied rows is not tested
    expect_as_oracle(a, 17, 30, 0, 0);
  }
}

// Within each of these ranges but the second a panel becomes lower, since the work space holds fewer long rows: 32, 28;
// 16, 12, 8 and 4 of them. The second begins with a low strip above higher ones. Only the last rows are factored, on supplied rows of any contents.
TEST(Eaxfch2, PanelsBecomeLowerWhereRowsAreLong) {
  struct Range {
    std::size_t first;
    std::size_t last;
  };
  Random random(45);
  for (const Range& range :
       {Range{1401, 1480}, Range{1543, 1575}, Range{2889, 2920}, Range{3865, 3890}, Range{5809, 5834}}) {
    Numbers a(range.last * (range.last + 1) / 2);
    double value = 0.25;
    for (double& x : a) {
      value = value > 0.9 ? value - 0.8999 : value + 0.0137;
      x = value * 1e-3;
    }
    for (std::size_t i = 1; i <= range.last; ++i) {
      a[place(i, i)] = i < range.first ? 1.5 : random.uniform(1, 2);
    }
    expect_as_oracle(a, range.first, range.last, 0, 1);
    if (range.last < 3000) {
      const std::size_t refused = range.last - 10;
      a[place(refused, refused)] = 0;
      expect_as_oracle(a, range.first, range.last, 0, 1);
    }
  }
}

TEST(Cholesky, IsEaxfch) {
  Random random(46);
  for (const int bad : {0, 31}) {
    Numbers a = positive_definite(random, 60);
    if (bad > 0) {
      a[place(31, 31)] = 0;
    }
    Numbers expected = a;
    const Outcome want = in_stated_order(expected, 1, 60, 0);
    Outcome got;
    EXPECT_EQ(by_address(Cholesky, 60, 1, 60, 0.0, a, got.ierr, got.piv), bad > 0 ? 1 : 0);
    EXPECT_EQ(got.ierr, bad);
    EXPECT_EQ(got.piv, want.piv);
    zortest::expect_same_bits(expected, a);
  }
}

}  // namespace
