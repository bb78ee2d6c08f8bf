// SPDX-License-Identifier: MIT
// eaxfch2 on matrices whose factor is known exactly, and on rounded ones; refused at every row.
#include <gtest/gtest.h>

#include <algorithm>

#include "ZORTAVFactorization.h"
#include "algorithms/factor_oracle.h"
#include "long/torture/torture.h"

namespace zortest {
namespace {

using factor::Numbers;
using factor::Outcome;
using factor::place;

Numbers triangle_of(const Rows& a, const Scaling& scaling) {
  Numbers packed;
  for (std::size_t i = 1; i < a.size(); ++i) {
    for (std::size_t j = 1; j <= i; ++j) {
      packed.push_back(scaling.of(i, j, a[i][j]));
    }
  }
  return packed;
}

struct Factored {
  Numbers a;
  Outcome outcome;
};

// In one call or in two; the state must be that of the stated steps, bit for bit.
Factored factored(const Numbers& matrix, std::size_t n, std::size_t first_rows) {
  Numbers expected = matrix;
  const Outcome want = factor::in_stated_order(expected, 1, n, 0);
  Guarded<double> a(matrix, n % 8);
  Outcome got{-1, 777};
  const double tol = 0;
  const auto last = static_cast<int32_t>(n);
  const auto rows = static_cast<int32_t>(first_rows);
  const int32_t one = 1;
  const int32_t next = rows + 1;
  eaxfch2(&last, &one, &rows, &tol, a.data(), &got.ierr, &got.piv);
  if (got.ierr == 0) {
    eaxfch2(&last, &next, &last, &tol, a.data(), &got.ierr, &got.piv);
  }
  EXPECT_EQ(want.ierr, got.ierr);
  EXPECT_TRUE(same_bits(want.piv, got.piv)) << want.piv << " " << got.piv;
  expect_same_bits(expected, a.values());
  EXPECT_TRUE(a.intact());
  return {a.values(), got};
}

void refuse_every_row(const Numbers& matrix, std::size_t n, std::size_t last, Random& random) {
  for (std::size_t q = 1; q <= last && !testing::Test::HasFailure(); ++q) {
    SCOPED_TRACE(testing::Message() << "refused at " << q);
    Numbers a = matrix;
    a[place(q, q)] = q % 2 == 0 ? -a[place(q, q)] : 0;
    const Factored result = factored(a, n, static_cast<std::size_t>(random.integer(0, static_cast<int>(n))));
    EXPECT_EQ(result.outcome.ierr, static_cast<int>(q));
    EXPECT_TRUE(same_bits(result.a[place(q, q)], a[place(q, q)])) << "its diagonal stays";
  }
}

void check_exact(Random& random, const Kind& kind) {
  const int n = kind.size;
  const auto order = static_cast<std::size_t>(n);
  Rows l = integer_triangle(random, n);
  const auto zero = static_cast<std::size_t>(kind.singular ? random.integer(1, n) : 0);
  for (std::size_t j = 1; j <= order; ++j) {
    l[j][j] = j == zero ? 0 : std::ldexp(1, random.integer(0, 3));
  }
  Rows a = l;
  for (std::size_t i = 1; i <= order; ++i) {
    for (std::size_t j = 1; j <= i; ++j) {
      a[i][j] = 0;
      for (std::size_t k = 1; k <= j; ++k) {
        a[i][j] += l[i][k] * l[j][k];
      }
    }
  }
  const Scaling scaling(random, n);
  const Numbers matrix = triangle_of(a, scaling);
  const Factored result = factored(matrix, order, order);
  EXPECT_EQ(result.outcome.ierr, static_cast<int>(zero));
  EXPECT_EQ(result.outcome.piv, zero == 0 ? 777 : 0);
  for (std::size_t i = 1; i <= order && (zero == 0 || i < zero); ++i) {
    for (std::size_t j = 1; j <= i; ++j) {
      ASSERT_EQ(result.a[place(i, j)], scaling.of_row(i, l[i][j])) << i << ", " << j;
    }
  }
  if (kind.refused) {
    refuse_every_row(matrix, order, zero != 0 ? zero : order, random);
  }
}

long double check_rounded(Random& random, const Kind& kind) {
  const int n = kind.size;
  const auto order = static_cast<std::size_t>(n);
  const Rows a = dominant_matrix(random, std::vector<double>(order + 1, 1));
  const Scaling scaling(random, n);
  const Numbers matrix = triangle_of(a, scaling);
  const Factored result = factored(matrix, order, static_cast<std::size_t>(random.integer(0, n)));
  EXPECT_EQ(result.outcome.ierr, 0);
  const long double error = backward_error(a, scaling, [&](std::size_t i, std::size_t j) {
    long double sum = 0;
    for (std::size_t k = 1; k <= j; ++k) {
      sum += static_cast<long double>(result.a[place(i, k)]) * result.a[place(j, k)];
    }
    return sum;
  });
  if (kind.refused) {
    refuse_every_row(matrix, order, order, random);
  }
  return error;
}

TEST(CholeskyTorture, ExactFactors) {
  for_matrices("exact", [](Random& random, const Kind& kind, int) { check_exact(random, kind); });
}

TEST(CholeskyTorture, BackwardErrorAndRefusals) {
  for_rounded_matrices("rounded", check_rounded);
}

}  // namespace
}  // namespace zortest
