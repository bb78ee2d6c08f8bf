// SPDX-License-Identifier: MIT
// eaxinv, and what eaxinvs and eaxrmc3 leave alone.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <cstdint>

#include "ZORTAVInversion.h"
#include "algorithms/inversion_oracle.h"
#include "support/by_address.h"
#include "support/numbers.h"

namespace zortest {
namespace {

int32_t invert(int32_t mode, Guarded<double>& a, const Matrix& shape, int32_t ierr = 7) {
  std::vector<int32_t> ipiv(static_cast<std::size_t>(std::max(shape.n, 0)));
  eaxinv(&mode, &shape.lda, &shape.n, mode == 1 ? ipiv.data() : nullptr, mode == 1 || mode == 2 ? nullptr : &ierr,
         a.data());
  EXPECT_TRUE(a.intact());
  return ierr;
}

// Inverts a copy and compares it with the plain steps.
void expect_stated_steps(const Matrix& a, int32_t mode, std::size_t offset) {
  Guarded<double> x(a.a, offset);
  const int32_t ierr = invert(mode, x, a);
  Matrix expected = a;
  if (mode == 1) {
    invert_general(expected);
    ASSERT_EQ(ierr, 7);
  } else {
    const bool accepted = invert_symmetric(expected, mode == 3);
    ASSERT_EQ(ierr, mode == 2 ? 7 : accepted ? 0 : 1);
  }
  SCOPED_TRACE(testing::Message() << "n " << a.n << " mode " << mode);
  expect_same_bits(expected.a, x.values());
}

// More rows than are held at once, more columns than the rows of a panel are buffered for; nearly all multipliers are
// zeros, of which the plain steps make short work.
TEST(Inversion, LargeOrders) {
  Random random(43);
  const int n = 2056;
  const int block = 5;
  Matrix a(n, 2304);
  for (int j = 1; j <= n; ++j) {
    std::fill_n(&a(1, j), n, 0.0);
    const int first = (j - 1) / block * block + 1;
    for (int i = first; i < std::min(first + block, n + 1); ++i) {
      a((i + 700) % n + 1, j) = random.uniform();
    }
  }
  expect_stated_steps(a, 1, 1);
  expect_stated_steps(random_matrix(random, 700, 768, true), 3, 1);
}

// Leaves signalling NaNs where the next call has its buffers.
[[gnu::noinline]] void spoil_stack() {
  volatile std::uint64_t words[48 * 1024];
  for (volatile std::uint64_t& word : words) {
    word = 0x7FF4000000000001;
  }
}

// Callers may run with traps on: what was never filled must not be calculated with, even where the result is dropped.
TEST(Inversion, BuffersAreFilledBeforeUse) {
  Random random(45);
  for (const int n : {13, 81, 107, 150, 274, 275, 277}) {
    for (const int32_t mode : {1, 2, 3}) {
      const Matrix a = random_matrix(random, n, n, mode != 1);
      Guarded<double> x(a.a, 0);
      std::feclearexcept(FE_ALL_EXCEPT);
      spoil_stack();
      invert(mode, x, a);
      EXPECT_EQ(std::fetestexcept(FE_INVALID), 0) << "n " << n << " mode " << mode;
      EXPECT_LT(identity_error(a, x.values(), a.lda), mode == 1 ? 1e-8 : 1e-12) << "n " << n << " mode " << mode;
    }
  }
}

// Zeros of both signs, infinities and NaN, wherever they meet the multipliers and pivots of a panel.
TEST(Inversion, ZerosAndSpecialValues) {
  Random random(42);
  for (const double special : {0.0, inf, nan}) {
    for (int trial = 0; trial < 6; ++trial) {
      const int32_t mode = 1 + trial % 3;
      Matrix a = random_matrix(random, random.integer(90, 170), trial % 2 == 0 ? 171 : 256, mode != 1);
      const int kept = random.integer(1, 60);  // of a hundred elements
      for (int j = 1; j <= a.n; ++j) {
        for (int i = 1; i < j; ++i) {
          for (double* const x : {&a(i, j), &a(j, i)}) {
            *x = random.integer(1, 100) <= kept ? *x : random.integer(0, 1) != 0 ? 0.0 : -0.0;
          }
          a(j, i) = mode != 1 ? a(i, j) : a(j, i);
        }
      }
      const int i = random.integer(1, a.n);
      const int j = random.integer(1, a.n);
      a(i, j) = special;
      a(j, i) = mode != 1 ? special : a(j, i);
      expect_stated_steps(a, mode, 3);
    }
  }
}

// The refused pivot at every place of a panel: the diagonal is lowered by what its pivot would have been.
TEST(Inversion, RefusesSmallPivots) {
  Random random(46);
  const int n = 160;
  const Matrix regular = random_matrix(random, n, n + 1, true);
  Matrix inverse = regular;
  std::vector<double> pivots;
  invert_symmetric(inverse, false, &pivots);
  for (int k = 1; k <= n; ++k) {
    Matrix a = regular;
    a(k, k) -= pivots[static_cast<std::size_t>(k - 1)];
    Guarded<double> x(a.a, 1);
    ASSERT_EQ(invert(0, x, a), 1) << k;
    const std::vector<double> before = a.a;
    ASSERT_FALSE(invert_symmetric(a, true));
    expect_same_bits(a.a, x.values());
    ASSERT_EQ(k == 1, a.a == before);
  }
}

TEST(Inversion, SmallestPivotAndEmptyMatrices) {
  Guarded<double> swap(std::vector<double>{0, 1, 1, 0}, 0);
  invert(1, swap, Matrix(2, 2));
  EXPECT_EQ(swap.values(), (std::vector<double>{0, 1, 1, 0}));
  Guarded<double> limit(std::vector<double>{-1e-8}, 0);
  EXPECT_EQ(invert(0, limit, Matrix(1, 1)), 1);
  EXPECT_EQ(limit[0], -1e-8);
  Guarded<double> accepted(std::vector<double>{std::nextafter(1e-8, 1.0)}, 0);
  EXPECT_EQ(invert(-1, accepted, Matrix(1, 1)), 0);
  Guarded<double> not_a_number(std::vector<double>{nan}, 0);
  EXPECT_EQ(invert(3, not_a_number, Matrix(1, 1)), 0);
  Guarded<double> zero(std::vector<double>{0}, 0);
  invert(1, zero, Matrix(1, 1));
  EXPECT_EQ(zero[0], inf);
  for (const int none : {0, -2}) {
    Guarded<double> untouched(std::vector<double>{5}, 0);
    Matrix empty(0, 1);
    empty.n = none;
    EXPECT_EQ(invert(1, untouched, empty), 7);
    EXPECT_EQ(invert(2, untouched, empty), 7);
    EXPECT_EQ(invert(3, untouched, empty), 0);
    EXPECT_EQ(untouched[0], 5);
  }
}

// What eaxrmc3, which calls eaxinvs, leaves in R, T and S, one after the other, and its ierr.
std::vector<double> reduced(const Matrix& matrix, int32_t m, int32_t& ierr) {
  const int32_t n = matrix.n;
  std::vector<double> a;
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= i; ++j) {
      a.push_back(matrix(i, j));
    }
  }
  const auto order = static_cast<std::size_t>(n);
  const auto columns = static_cast<std::size_t>(m);
  const std::vector<double> b(order * columns, 1.0);
  std::vector<double> d(order), v(order * order), w(order * order), rts(order * order + order * columns, 99);
  rts.resize(rts.size() + columns * columns, 99);
  double* const t = rts.data() + order * order;
  const int32_t result = by_address(eaxrmc3, n, m, a, b, matrix.lda, d, v, w, rts, *t, t[order * columns], ierr);
  EXPECT_EQ(result, ierr == 0 ? 0 : 1);
  return rts;
}

TEST(SpectralInverse, LeavesTheResultsAloneWhenThereIsNoInverse) {
  Random random(48);
  Matrix singular(6, 6);
  Matrix almost(6, 6);
  Matrix unsolvable = random_matrix(random, 6, 6, true);
  for (int i = 1; i <= 6; ++i) {
    for (int j = 1; j <= 6; ++j) {
      singular(i, j) = i * j;
      almost(i, j) = i == j ? (i == 4 ? 6 * 0x1p-52 : 1) : 0;  // its limit exactly
    }
  }
  unsolvable(4, 3) = nan;
  int32_t ierr = 7;
  for (const Matrix& a : {singular, almost, unsolvable}) {
    const std::vector<double> results = reduced(a, 2, ierr);
    EXPECT_TRUE(a(4, 3) != a(4, 3) ? ierr > 0 : ierr == -1) << ierr;
    EXPECT_EQ(results, std::vector<double>(results.size(), 99));
  }
  almost(4, 4) = std::nextafter(6 * 0x1p-52, 1.0);
  reduced(almost, 2, ierr);
  EXPECT_EQ(ierr, 0);
  EXPECT_EQ(reduced(Matrix(0, 1), 2, ierr), std::vector<double>(4, 0.0));
  EXPECT_EQ(ierr, 0);
}

}  // namespace
}  // namespace zortest
