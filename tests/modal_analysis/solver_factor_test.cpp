// SPDX-License-Identifier: MIT
// The multifrontal factorization: solves, inertia, refusals.
#include <gtest/gtest.h>

#include <set>

#include "factorization/multifrontal_factor.h"
#include "factorization/nested_dissection.h"
#include "modal_analysis/solver_matrices.h"
#include "modes/eigenvalue_count.h"
#include "modes/matrix_pencil.h"
#include "modes/modal_solver.h"

namespace {

using modal::at;
using modal::SymmetricMatrix;
using modaltest::Builder;

modal::AssemblyTree plan(const SymmetricMatrix& matrix) {
  const modal::CompressedGraph compressed = modal::compress(matrix);
  return modal::assembly_tree(compressed, modal::nested_dissection(compressed.graph));
}

void no_report(double /*done*/, double /*total*/) {}

// max |A·x − b| / (max row sum of |A| · max |x|)
double backward_error(const SymmetricMatrix& a, const double* x, const double* b) {
  SymmetricMatrix magnitude = a;
  for (double& value : magnitude.value) {
    value = std::abs(value);
  }
  const std::vector<double> ones(at(a.order), 1.0);
  const std::vector<double> row_sum = modaltest::times(magnitude, ones.data());
  const std::vector<double> ax = modaltest::times(a, x);
  double residual = 0.0;
  double size = 0.0;
  for (std::size_t i = 0; i < ax.size(); ++i) {
    residual = std::max(residual, std::abs(ax[i] - b[i]));
    size = std::max(size, std::abs(x[i]));
  }
  return residual / (size * *std::max_element(row_sum.begin(), row_sum.end()));
}

void expect_solves(const SymmetricMatrix& a, const modal::PivotRule& rule, std::int32_t columns) {
  const modal::AssemblyTree tree = plan(a);
  modal::MultifrontalFactor factor(tree);
  const modal::Elimination elimination = factor.factorize(a, rule, no_report);
  ASSERT_FALSE(elimination.refusal) << "equation " << elimination.refusal->equation << " status "
                                    << elimination.refusal->status;
  EXPECT_EQ(elimination.accepted, a.order);
  const std::size_t size = at(a.order) * at(columns);
  const std::vector<double> b = zortest::Random(99).vector(size);
  zortest::Guarded<double> x(b, 1);
  factor.solve(columns, x.data());
  EXPECT_TRUE(x.intact());
  for (std::int32_t c = 0; c < columns; ++c) {
    const std::size_t first = at(c) * at(a.order);
    EXPECT_LE(backward_error(a, x.data() + first, b.data() + first), 1e-14) << "column " << c;
  }
}

modal::PivotRule definite(const SymmetricMatrix& a) {
  return modal::positive_definite_rule(a.order);
}

TEST(SolverFactor, SolvesDefiniteSystems) {
  for (const std::int32_t columns : {1, 4, 11}) {
    SCOPED_TRACE(columns);
    for (const SymmetricMatrix& a :
         {modaltest::identity(1), modaltest::diagonal({4.0, 1e-3, 7e5}), modaltest::laplacian(29, 23),
          modaltest::plate_pattern(24, 31), modaltest::random_dominant(300, 1.5, 1),
          modaltest::random_dominant(300, 6.0, 2), modaltest::random_dominant(130, 60.0, 3)}) {
      expect_solves(a, definite(a), columns);
    }
  }
}

// Fronts with more pivots than a panel of the solves, and rows beyond a block of eagemm.
TEST(SolverFactor, SolvesWithLargeFronts) {
  const SymmetricMatrix dense = modaltest::random_dominant(300, 900.0, 4);
  EXPECT_EQ(plan(dense).largest_front, 300);
  expect_solves(dense, definite(dense), 8);
  const SymmetricMatrix grid = modaltest::laplacian(70, 70);
  EXPECT_GE(plan(grid).largest_front, 81);
  expect_solves(grid, definite(grid), 3);
}

TEST(SolverFactor, SolvesIndefiniteSystemsAndCountsNegativePivots) {
  for (const std::uint64_t seed : {5U, 6U, 7U, 8U}) {
    int negative = 0;
    const auto sign = [](std::int32_t i) { return i % 3 == 1 ? -1.0 : 1.0; };
    for (std::int32_t i = 0; i < 200; ++i) {
      negative += sign(i) < 0.0 ? 1 : 0;
    }
    // Dominant rows: by Gershgorin the eigenvalues have the signs of the diagonal.
    const SymmetricMatrix a = modaltest::random_dominant(200, 5.0, seed, sign);
    expect_solves(a, modal::indefinite_rule(), 2);
    const auto ignore = [](const modal::Front&, const double*) {};
    EXPECT_EQ(modal::eliminate(plan(a), a, modal::indefinite_rule(), ignore).negative, negative);
  }
}

TEST(SolverFactor, InertiaOfTheShiftedLaplacian) {
  const SymmetricMatrix k = modaltest::laplacian(24, 17);
  const SymmetricMatrix m = modaltest::identity(k.order);
  const modal::AssemblyTree tree = plan(k);
  const std::vector<double> eigenvalue = modaltest::laplacian_eigenvalues(24, 17);
  for (std::size_t i = 1; i < eigenvalue.size(); i += i < 12 ? 1 : 29) {
    if (eigenvalue[i] - eigenvalue[i - 1] < 1e-6) {
      continue;
    }
    const modal::EigenvalueCount count = modal::count_eigenvalues(k, m, tree, eigenvalue[i - 1], eigenvalue[i]);
    EXPECT_GT(count.shift, eigenvalue[i - 1]);
    EXPECT_LT(count.shift, eigenvalue[i]);
    EXPECT_EQ(count.below, static_cast<std::int32_t>(i));
  }
}

TEST(SolverFactor, ShiftOnASingularPivotIsMovedAside) {
  // The first σ tried makes the first diagonal zero, though an eigenvalue of the coupled pair is elsewhere.
  Builder b(2);
  b.add(0, 0, 10.1);
  b.add(1, 1, 10.1);
  b.add(1, 0, 8.0);
  const SymmetricMatrix k = b.matrix();
  const modal::EigenvalueCount count = modal::count_eigenvalues(k, modaltest::identity(2), plan(k), 10.0, 11.0);
  EXPECT_EQ(count.below, 1);
  EXPECT_NE(count.shift, 10.1);
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

TEST(SolverFactor, ShiftedUnitesPatterns) {
  Builder k(3);
  k.add(0, 0, 2.0);
  k.add(1, 1, 3.0);
  k.add(2, 2, 4.0);
  k.add(2, 0, 1.0);
  Builder m(3);
  m.add(1, 0, 5.0);
  m.add(2, 1, 7.0);
  m.add(2, 2, 0.5);
  const SymmetricMatrix a = modal::shifted(k.matrix(), m.matrix(), 2.0);
  EXPECT_EQ(a.row_end, (std::vector<std::int32_t>{0, 1, 3, 6}));
  EXPECT_EQ(a.column, (std::vector<std::int32_t>{1, 1, 2, 1, 2, 3}));
  EXPECT_EQ(a.value, (std::vector<double>{2.0, -10.0, 3.0, 1.0, -14.0, 3.0}));
  EXPECT_EQ(modal::shifted(k.matrix(), m.matrix(), 0.0).column, a.column);
}

struct Refused {
  const char* name;
  SymmetricMatrix matrix;
  std::vector<std::int32_t> equations;  // any of them, from 1
  std::set<std::int32_t> status;
};

// A chain of springs between the unknowns first .. last, held at none of them.
void add_free_chain(Builder& b, std::int32_t first, std::int32_t last) {
  for (std::int32_t i = first; i < last; ++i) {
    const double spring = 1.0 / (3 + i % 7);
    b.add(i, i, spring);
    b.add(i + 1, i + 1, spring);
    b.add(i + 1, i, -spring);
  }
}

TEST(SolverFactor, RefusalsNameTheEquation) {
  std::vector<Refused> cases;
  Builder massless_row(6);
  add_free_chain(massless_row, 0, 4);
  massless_row.add(0, 0, 1.0);
  cases.push_back({"nothing at all at unknown 6", massless_row.matrix(), {6}, {6}});
  cases.push_back({"negative diagonal", modaltest::diagonal({1.0, 2.0, -3.0, 4.0}), {3}, {34}});
  cases.push_back({"NaN", modaltest::diagonal({1.0, zortest::nan, 3.0}), {2}, {34}});
  Builder floating(60);
  add_free_chain(floating, 0, 29);
  floating.add(0, 0, 1.0);
  add_free_chain(floating, 30, 59);
  std::vector<std::int32_t> second_chain(30);
  for (std::int32_t i = 0; i < 30; ++i) {
    second_chain[at(i)] = 31 + i;
  }
  cases.push_back({"the second of two chains floats", floating.matrix(), second_chain, {6, 34}});
  Builder indefinite(2);
  indefinite.add(0, 0, 1.0);
  indefinite.add(1, 1, 1.0);
  indefinite.add(1, 0, 3.0);
  cases.push_back({"coupling stronger than the diagonals", indefinite.matrix(), {1, 2}, {34}});
  Builder exact(2);
  exact.add(0, 0, 1.0);
  exact.add(1, 1, 1.0);
  exact.add(1, 0, 1.0);
  cases.push_back({"exact zero after elimination", exact.matrix(), {1, 2}, {6}});

  for (const Refused& refused : cases) {
    SCOPED_TRACE(refused.name);
    const auto ignore = [](const modal::Front&, const double*) {};
    const modal::Elimination result =
        modal::eliminate(plan(refused.matrix), refused.matrix, definite(refused.matrix), ignore);
    ASSERT_TRUE(result.refusal);
    EXPECT_EQ(refused.status.count(result.refusal->status), 1U) << "status " << result.refusal->status;
    EXPECT_EQ(std::count(refused.equations.begin(), refused.equations.end(), result.refusal->equation), 1)
        << "equation " << result.refusal->equation;
  }
}

// The stiffness of a free grid is singular; the last pivot is rounding. One weak spring to the ground makes it sound.
TEST(SolverFactor, TellsFloatingFromIllConditioned) {
  for (const std::int32_t k : {5, 20, 60}) {
    for (const double ground : {0.0, 1e-6}) {
      Builder b(k * k);
      for (std::int32_t v = 0; v < k * k; ++v) {
        for (const std::int32_t w : {v % k > 0 ? v - 1 : -1, v - k}) {
          if (w >= 0) {
            const double spring = 1.0 + 0.37 * (v % 5);
            b.add(v, v, spring);
            b.add(w, w, spring);
            b.add(v, w, -spring);
          }
        }
      }
      b.add(0, 0, ground);
      const SymmetricMatrix a = b.matrix();
      const auto ignore = [](const modal::Front&, const double*) {};
      const modal::Elimination result = modal::eliminate(plan(a), a, definite(a), ignore);
      EXPECT_EQ(result.refusal.has_value(), ground == 0.0) << k << " ground " << ground;
    }
  }
}

}  // namespace
