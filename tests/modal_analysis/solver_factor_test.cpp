// SPDX-License-Identifier: MIT
// The multifrontal factorization: solves, inertia, refusals.
#include <gtest/gtest.h>

#include <set>

#include "factorization/multifrontal_factor.h"
#include "modal_analysis/solver_matrices.h"
#include "modes/eigenvalue_count.h"
#include "modes/modal_solver.h"

namespace {

using modal::at;
using modal::SymmetricMatrix;
using modaltest::Builder;
using modaltest::plan;

modal::Elimination eliminate_definite(const SymmetricMatrix& a) {
  return modal::eliminate(plan(a), a, modal::positive_definite_rule(a.order),
                          [](const modal::Front& /*front*/, const double* /*packed*/) {});
}

double largest(const std::vector<double>& x) {
  return std::abs(*std::max_element(x.begin(), x.end(), [](double a, double b) { return std::abs(a) < std::abs(b); }));
}

// max |A·x − b| / (max row sum of |A| · max |x|)
double backward_error(const SymmetricMatrix& a, const std::vector<double>& x, const double* b) {
  SymmetricMatrix magnitude = a;
  std::transform(a.value.begin(), a.value.end(), magnitude.value.begin(), [](double v) { return std::abs(v); });
  const std::vector<double> ones(x.size(), 1.0);
  std::vector<double> residual = modaltest::times(a, x.data());
  for (std::size_t i = 0; i < x.size(); ++i) {
    residual[i] -= b[i];
  }
  return largest(residual) / (largest(modaltest::times(magnitude, ones.data())) * largest(x));
}

TEST(SolverFactor, SolvesSystemsAndCountsNegativePivots) {
  // The dense one and the last have fronts with more pivots than a panel of the solves and rows beyond a block of
  // eagemm.
  const SymmetricMatrix dense = modaltest::random_dominant(300, 900.0, 4);
  ASSERT_EQ(plan(dense).largest_front, 300);
  for (const SymmetricMatrix& a :
       {modaltest::identity(1), modaltest::diagonal({4.0, 1e-3, 7e5}), modaltest::plate_pattern(24, 31),
        modaltest::random_dominant(300, 1.5, 1), modaltest::random_dominant(300, 6.0, 2), dense,
        modaltest::random_dominant(200, 5.0, 5, true), modaltest::random_dominant(200, 5.0, 6, true),
        modaltest::laplacian(70, 70)}) {
    std::int32_t negative = 0;
    for (std::size_t i = 1; i < a.row_end.size(); ++i) {
      negative += a.value[at(a.row_end[i] - 1)] < 0.0 ? 1 : 0;
    }
    const modal::AssemblyTree tree = plan(a);
    modal::MultifrontalFactor factor(tree);
    const modal::Elimination elimination =
        factor.factorize(a, negative > 0 ? modal::indefinite_rule() : modal::positive_definite_rule(a.order),
                         [](double done, double total) { EXPECT_LE(done, total); });
    ASSERT_FALSE(elimination.refusal) << "order " << a.order << " equation " << elimination.refusal->equation;
    EXPECT_EQ(elimination.accepted, a.order);
    EXPECT_EQ(elimination.negative, negative);
    for (const std::int32_t columns : {1, 11}) {
      const std::vector<double> b = zortest::Random(99).vector(at(a.order) * at(columns));
      zortest::Guarded<double> x(b, 1);
      factor.solve(columns, x.data());
      EXPECT_TRUE(x.intact());
      for (std::size_t first = 0; first < b.size(); first += at(a.order)) {
        const std::vector<double> column(x.data() + first, x.data() + first + at(a.order));
        EXPECT_LE(backward_error(a, column, b.data() + first), 1e-14) << "order " << a.order;
      }
    }
  }
}

TEST(SolverFactor, InertiaOfTheShiftedLaplacian) {
  const SymmetricMatrix k = modaltest::laplacian(24, 17);
  const SymmetricMatrix m = modaltest::identity(k.order);
  const modal::AssemblyTree tree = plan(k);
  const std::vector<double> eigenvalue = modaltest::laplacian_eigenvalues(24, 17);
  for (std::size_t i = 1; i < eigenvalue.size(); i += i < 12 ? 1 : 29) {
    if (eigenvalue[i] - eigenvalue[i - 1] >= 1e-6) {
      const modal::EigenvalueCount count = modal::count_eigenvalues(k, m, tree, eigenvalue[i - 1], eigenvalue[i]);
      EXPECT_GT(count.shift, eigenvalue[i - 1]);
      EXPECT_LT(count.shift, eigenvalue[i]);
      EXPECT_EQ(count.below, static_cast<std::int32_t>(i));
    }
  }
  // The first σ tried makes the first diagonal zero, though an eigenvalue of the coupled pair is elsewhere.
  const SymmetricMatrix pair = modaltest::matrix(2, {{0, 0, 10.1}, {1, 1, 10.1}, {1, 0, 8.0}});
  const modal::EigenvalueCount aside = modal::count_eigenvalues(pair, modaltest::identity(2), plan(pair), 10.0, 11.0);
  EXPECT_EQ(aside.below, 1);
  EXPECT_NE(aside.shift, 10.1);
}

TEST(SolverFactor, TellsTheShiftAtWhichNothingCanBeCounted) {
  // [0 1; 1 0] - σ·[0 0; 0 1]: the first pivot is zero at every shift.
  const SymmetricMatrix k{2, {0, 1, 3}, {1, 1, 2}, {0.0, 1.0, 0.0}};
  try {
    modal::count_eigenvalues(k, modaltest::diagonal({0.0, 1.0}), plan(k), 1.0, 2.0);
    FAIL() << "counted without a factor";
  } catch (const modal::PivotRefused& refused) {
    EXPECT_EQ(refused.equation, 1);
    EXPECT_EQ(refused.status, 6);
    EXPECT_GT(refused.shift, 1.0);
    EXPECT_LT(refused.shift, 2.0);
  }
}

TEST(SolverFactor, RefusalsNameTheEquation) {
  Builder massless(6);
  Builder floating(60);
  for (std::int32_t i = 0; i < 59; ++i) {
    if (i < 4) {
      massless.join(i, i + 1, 1.0 / (3 + i % 7));
    }
    if (i != 29) {
      floating.join(i, i + 1, 1.0 / (3 + i % 7));
    }
  }
  massless.add(0, 0, 1.0);
  floating.add(0, 0, 1.0);
  struct Refused {
    const char* name;
    SymmetricMatrix matrix;
    std::int32_t first, last;  // equation
    std::set<std::int32_t> status;
  };
  for (const auto& [name, a, first, last, status] : {
           Refused{"nothing at all at unknown 6", massless.matrix(), 6, 6, {6}},
           {"negative diagonal", modaltest::diagonal({1.0, 2.0, -3.0, 4.0}), 3, 3, {34}},
           {"NaN", modaltest::diagonal({1.0, zortest::nan, 3.0}), 2, 2, {34}},
           {"the second of two chains floats", floating.matrix(), 31, 60, {6, 34}},
           {"strong coupling", modaltest::matrix(2, {{0, 0, 1.0}, {1, 1, 1.0}, {1, 0, 3.0}}), 1, 2, {34}},
           {"exact zero", modaltest::matrix(2, {{0, 0, 1.0}, {1, 1, 1.0}, {1, 0, 1.0}}), 1, 2, {6}},
       }) {
    SCOPED_TRACE(name);
    const modal::Elimination result = eliminate_definite(a);
    ASSERT_TRUE(result.refusal);
    EXPECT_EQ(status.count(result.refusal->status), 1U) << "status " << result.refusal->status;
    EXPECT_GE(result.refusal->equation, first);
    EXPECT_LE(result.refusal->equation, last);
  }
}

// The stiffness of a free grid is singular; the last pivot is rounding. One weak spring to the ground makes it sound.
TEST(SolverFactor, TellsFloatingFromIllConditioned) {
  for (const std::int32_t k : {5, 20, 60}) {
    Builder b(k * k);
    for (std::int32_t v = 1; v < k * k; ++v) {
      if (v % k > 0) {
        b.join(v, v - 1, 1.0 + 0.37 * (v % 5));
      }
      if (v >= k) {
        b.join(v, v - k, 1.0 + 0.37 * (v % 5));
      }
    }
    EXPECT_TRUE(eliminate_definite(b.matrix()).refusal) << k;
    b.add(0, 0, 1e-6);
    EXPECT_FALSE(eliminate_definite(b.matrix()).refusal) << k;
  }
}

}  // namespace
