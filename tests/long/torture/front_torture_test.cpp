// SPDX-License-Identifier: MIT
// easlff_nt on fronts whose factors are known exactly, and on fronts whose inertia is; refused at every pivot.
#include <gtest/gtest.h>

#include <algorithm>

#include "algorithms/front_oracle.h"
#include "long/torture/torture.h"

namespace zortest {
namespace {

using front::Front;

Front front_of(const Rows& a, std::size_t m, const Scaling& scaling) {
  Front f{.n = a.size() - 1, .m = m, .a = std::vector<double>((a.size() - 1) * a.size() / 2)};
  f.tolp = 0;
  f.tolr = 1e-10;
  f.d0.resize(f.n + 1);
  for (std::size_t j = 1; j <= f.n; ++j) {
    for (std::size_t i = j; i <= f.n; ++i) {
      f.at(i, j) = scaling.of(i, j, a[i][j]);
    }
    f.initial(j) = f.at(j, j);
  }
  return f;
}

// By the library; its state must be that of the stated steps, bit for bit.
Front eliminated(const Front& start, std::size_t offset) {
  Front expected = start;
  expected.eliminate_one_by_one();
  Front f = start;
  Guarded<double> a(start.a, offset);
  f.eliminate(a);
  f.a = a.values();
  expect_same_bits(expected.a, f.a);
  EXPECT_EQ(expected.result, f.result);
  EXPECT_EQ(expected.istat, f.istat);
  EXPECT_EQ(expected.neq, f.neq);
  EXPECT_EQ(expected.npiv, f.npiv);
  EXPECT_TRUE(same_bits(expected.rmin, f.rmin)) << expected.rmin << " " << f.rmin;
  return f;
}

// Every pivot up to the last one that there is: by its ratio, or by taking off what it would have been.
void refuse_every_pivot(const Front& start, std::size_t last, bool exact) {
  Front whole = start;
  whole.tolr = -inf;
  whole.tolp = 0;
  whole.eliminate_one_by_one();
  for (std::size_t q = 1; q <= last && !testing::Test::HasFailure(); ++q) {
    SCOPED_TRACE(testing::Message() << "refused at " << q);
    Front f = start;
    const double pivot = whole.at(q, q);
    if (q % 2 == 0) {
      f.initial(q) = exact ? std::copysign(0.0, -pivot) : f.at(q, q) * 1e13;  // no ratio is below minus infinity
    } else {
      f.at(q, q) -= pivot;
    }
    const Front result = eliminated(f, q % 8);
    EXPECT_EQ(result.result, 1);
    EXPECT_EQ(result.istat, exact && (q % 2 == 1 || pivot == 0) ? 6 : 34);
    EXPECT_EQ(result.neq, static_cast<int>(q));
    EXPECT_EQ(result.npiv, static_cast<int>(q) - 1);
  }
}

// L and D of small integers and powers of two: nothing is rounded, so the factors come back exactly.
void check_exact(Random& random, const Kind& kind) {
  const int n = kind.size;
  const Rows l = integer_triangle(random, n);
  const auto order = static_cast<std::size_t>(n);
  const auto m = static_cast<std::size_t>(kind.refused ? random.integer(1, n) : n);
  const auto zero = static_cast<std::size_t>(kind.singular ? random.integer(1, static_cast<int>(m)) : 0);
  std::vector<double> d(order + 1);
  int negative = 0;
  for (std::size_t j = 1; j <= order; ++j) {
    d[j] = j == zero ? 0 : std::ldexp(random.integer(0, 1) == 0 ? 1 : -1, random.integer(-3, 3));
    negative += j <= m && d[j] < 0 ? 1 : 0;
  }
  Rows a = l;
  for (std::size_t i = 1; i <= order; ++i) {
    for (std::size_t j = 1; j <= i; ++j) {
      a[i][j] = 0;
      for (std::size_t k = 1; k <= j; ++k) {
        a[i][j] += l[i][k] * d[k] * l[j][k];
      }
    }
  }
  const Scaling scaling(random, n);
  Front f = front_of(a, m, scaling);
  for (std::size_t j = 1; j <= order; ++j) {
    f.initial(j) = scaling.of(j, j, 1);  // a diagonal of zero would be a ratio of its own
  }
  f.tolr = -inf;    // signs change on the way: the ratio decides nothing
  f.tolp = 5e-324;  // the least threshold: only an exact zero is refused
  const Front result = eliminated(f, order % 8);
  if (zero != 0) {
    EXPECT_EQ(result.istat, 6);
    EXPECT_EQ(result.npiv, static_cast<int>(zero) - 1) << "the zero pivot is the one that is refused";
    EXPECT_EQ(result.rmin, 0);
  } else {
    EXPECT_EQ(result.istat, 0);
    int found = 0;
    for (std::size_t j = 1; j <= m; ++j) {
      for (std::size_t i = j; i <= order; ++i) {
        const double expected = i == j ? scaling.of(j, j, d[j]) : scaling.quotient(i, j, l[i][j]);
        ASSERT_EQ(result.a[front::place(order, i, j)], expected) << i << ", " << j;
      }
      found += result.a[front::place(order, j, j)] < 0 ? 1 : 0;
    }
    EXPECT_EQ(found, negative);
  }
  if (kind.refused) {
    refuse_every_pivot(f, zero != 0 ? zero : m, true);
  }
}

// L·D·Lᵀ + the remainder.
long double restored(const Front& f, std::size_t i, std::size_t j) {
  const auto at = [&f](std::size_t row, std::size_t column) -> long double {
    return f.a[front::place(f.n, row, column)];
  };
  long double sum = j > f.m ? at(i, j) : 0;
  for (std::size_t k = 1; k <= std::min(j, f.m); ++k) {
    sum += (i == k ? 1 : at(i, k)) * at(k, k) * (j == k ? 1 : at(j, k));
  }
  return sum;
}

long double check_rounded(Random& random, const Kind& kind) {
  const int n = kind.size;
  const auto m = static_cast<std::size_t>(random.integer(1, n));
  std::vector<double> sign(static_cast<std::size_t>(n) + 1);
  for (double& s : sign) {
    s = random.integer(0, 2) == 0 ? -1 : 1;
  }
  Rows a = dominant_matrix(random, sign);
  const auto dependent = static_cast<std::size_t>(kind.singular && m > 1 ? random.integer(2, static_cast<int>(m)) : 0);
  if (dependent != 0) {
    make_dependent(random, a, dependent);
  }
  const Scaling scaling(random, n);
  const Front f = front_of(a, m, scaling);
  const Front result = eliminated(f, m % 8);
  long double error = 0;
  if (dependent != 0) {
    EXPECT_EQ(result.istat, 34);
    EXPECT_EQ(result.npiv, static_cast<int>(dependent) - 1);
  } else {
    EXPECT_EQ(result.istat, 0);
    for (std::size_t j = 1; j <= m; ++j) {
      EXPECT_EQ(result.a[front::place(f.n, j, j)] < 0, sign[j] < 0) << "the sign of pivot " << j;
    }
    error = backward_error(a, scaling, [&](std::size_t i, std::size_t j) { return restored(result, i, j); });
  }
  if (kind.refused) {
    refuse_every_pivot(f, dependent != 0 ? dependent - 1 : m, false);
  }
  return error;
}

TEST(FrontTorture, ExactFactors) {
  for_matrices("exact front", [](Random& random, const Kind& kind, int) { check_exact(random, kind); });
}

TEST(FrontTorture, BackwardErrorInertiaAndRefusals) {
  for_rounded_matrices("front", check_rounded);
}

}  // namespace
}  // namespace zortest
