// SPDX-License-Identifier: MIT
// eaxfch2 against an element-by-element oracle in the stated order of the operations, bit for bit, on whole matrices,
// divided ranges, refused pivots at every row and rows too long for the routine's work space.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ZORMathematics.h"
#include "ZORTAVFactorization.h"
#include "algorithms/factor_oracle.h"
#include "support/numbers.h"

namespace {

using zortest::Guarded;
using zortest::nan;
using zortest::Random;
using zortest::factor::in_stated_order;
using zortest::factor::Numbers;
using zortest::factor::Outcome;
using zortest::factor::place;
using zortest::factor::positive_definite;

// Returns the factored matrix.
Numbers expect_as_oracle(const Numbers& matrix, std::size_t n1, std::size_t n2, double tol, std::size_t offset) {
  Numbers expected = matrix;
  const Outcome want = in_stated_order(expected, n1, n2, tol);
  Guarded<double> a(matrix, offset);
  Outcome got{-1, 777};
  const int32_t unread = -5;
  const auto first = static_cast<int32_t>(n1);
  const auto last = static_cast<int32_t>(n2);
  eaxfch2(&unread, &first, &last, &tol, a.data(), &got.ierr, &got.piv);
  EXPECT_EQ(want.ierr, got.ierr);
  EXPECT_TRUE(zortest::same_bits(want.piv, got.piv)) << want.piv << " " << got.piv;
  zortest::expect_same_bits(expected, a.values());
  EXPECT_TRUE(a.intact());
  return a.values();
}

TEST(Eaxfch2, GivesTheStatedBitsForEveryOrder) {
  Random random(41);
  for (std::size_t n = 1; n <= 73; ++n) {
    SCOPED_TRACE(n);
    const std::size_t order = n <= 70 ? n : 127 + 38 * (n - 71);
    expect_as_oracle(positive_definite(random, order), 1, order, n <= 70 ? 0 : 1e-6, n % 4);
  }
}

// A refused row keeps its diagonal, the rows before it are done, the rows after it are as they were: the oracle's
// whole memory is compared.
TEST(Eaxfch2, RefusesAPivotAtEveryRowOfEveryRange) {
  Random random(42);
  for (const std::size_t n : std::vector<std::size_t>{11, 19, 35}) {
    Numbers start = positive_definite(random, n);
    for (std::size_t n1 = 1; n1 <= n; n1 += 3) {
      for (std::size_t bad = n1; bad <= n; ++bad) {
        SCOPED_TRACE(testing::Message() << "n " << n << " n1 " << n1 << " bad row " << bad);
        Numbers a = start;
        a[place(bad, bad)] = -1;
        expect_as_oracle(a, n1, n, 0, bad % 3);
      }
      in_stated_order(start, n1, std::min(n, n1 + 2), 0);
    }
  }
}

TEST(Eaxfch2, RangesChangeNoBit) {
  Random random(43);
  const std::size_t n = 45;
  for (int trial = 0; trial < 60; ++trial) {
    Numbers a = positive_definite(random, n);
    for (std::size_t i = 1; i <= n;) {
      const auto last = std::min(n, i + static_cast<std::size_t>(random.integer(0, trial % 20)));
      a = expect_as_oracle(a, i, last, 0, 1);
      i = last + 1;
    }
  }
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

// The rows 5632 and 11264 are where strips of eight, then of four rows fill the work space; only the last rows are
// factored, on supplied rows of any contents.
TEST(Eaxfch2, RowsLongerThanTheWorkSpaceOfABlock) {
  Random random(45);
  const std::size_t n = 5637;
  const std::size_t first = 5622;
  Numbers a(n * (n + 1) / 2);
  double value = 0.25;
  for (double& x : a) {
    value = value > 0.9 ? value - 0.8999 : value + 0.0137;
    x = value * 1e-3;
  }
  for (std::size_t i = 1; i <= n; ++i) {
    a[place(i, i)] = i < first ? 1.5 : random.uniform(1, 2);
  }
  expect_as_oracle(a, first, n, 0, 1);
}

TEST(Cholesky, FactorsToWorkingPrecisionByBothNames) {
  Random random(46);
  const std::size_t n = 220;
  const auto order = static_cast<int32_t>(n);
  const int32_t one = 1;
  const double tol = 0;
  for (auto* const routine : {&eaxfch, static_cast<decltype(&eaxfch)>(&Cholesky)}) {
    const Numbers matrix = positive_definite(random, n);
    Numbers a = matrix;
    Outcome got{-1};
    EXPECT_EQ(routine(&order, &one, &order, &tol, a.data(), &got.ierr, &got.piv), 0);
    EXPECT_EQ(got.ierr, 0);
    for (std::size_t i = 1; i <= n; ++i) {
      for (std::size_t j = 1; j <= i; ++j) {
        double sum = 0;
        double magnitude = 0;
        for (std::size_t k = 1; k <= j; ++k) {
          sum += a[place(i, k)] * a[place(j, k)];
          magnitude += std::abs(a[place(i, k)] * a[place(j, k)]);
        }
        ASSERT_NEAR(sum, matrix[place(i, j)], static_cast<double>(n) * 0x1p-52 * magnitude);
      }
    }
    a = matrix;
    a[place(100, 100)] = 0;
    EXPECT_EQ(routine(&order, &one, &order, &tol, a.data(), &got.ierr, &got.piv), 1);
    EXPECT_EQ(got.ierr, 100);
    EXPECT_LT(got.piv, 0);
  }
}

}  // namespace
