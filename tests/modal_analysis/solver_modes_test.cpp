// SPDX-License-Identifier: MIT
// Modes against closed forms, and what happens where there are none.
#include <gtest/gtest.h>

#include <string>

#include "modal_analysis/solver_matrices.h"
#include "modes/checked_iteration.h"
#include "modes/modal_solver.h"
#include "modes/reduced_eigenproblem.h"

namespace {

using modal::at;
using modal::ModalResult;
using modal::SymmetricMatrix;
using modaltest::diagonal;
using modaltest::identity;
using modaltest::laplacian;

struct Steps : modal::Progress {
  void step(const char* phase, double done, double total) override {
    EXPECT_GE(done, 0.0) << phase;
    EXPECT_LE(done, total) << phase;
  }
};

ModalResult solve(const SymmetricMatrix& k, const SymmetricMatrix& m, int modes) {
  Steps steps;
  return modal::find_lowest_modes(k, m, modes, steps);
}

double dot(const std::vector<double>& x, const double* y) {
  double sum = 0.0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    sum += x[i] * y[i];
  }
  return sum;
}

// Everything that must hold of any result.
void expect_sound(const ModalResult& result, const SymmetricMatrix& k, const SymmetricMatrix& m, int modes) {
  const std::size_t n = at(k.order);
  ASSERT_EQ(result.eigenvalue.size(), at(modes));
  ASSERT_EQ(result.mode.size(), at(modes) * n);
  ASSERT_EQ(result.residual.size(), at(modes));
  EXPECT_TRUE(std::is_sorted(result.eigenvalue.begin(), result.eigenvalue.end()));
  EXPECT_EQ(result.below_shift, result.found_below_shift);
  for (std::size_t i = 0; i < result.eigenvalue.size(); ++i) {
    const double* x = result.mode.data() + i * n;
    const std::vector<double> kx = modaltest::times(k, x);
    const std::vector<double> mx = modaltest::times(m, x);
    std::vector<double> r = kx;
    for (std::size_t row = 0; row < n; ++row) {
      r[row] -= result.eigenvalue[i] * mx[row];
    }
    EXPECT_NEAR(std::sqrt(dot(r, r.data()) / dot(kx, kx.data())), result.residual[i], 1e-9);
    EXPECT_LE(result.residual[i], 2e-5) << "mode " << i + 1;
    for (std::size_t j = 0; j <= i; ++j) {
      EXPECT_NEAR(dot(mx, result.mode.data() + j * n), i == j ? 1.0 : 0.0, 1e-11) << "modes " << i + 1 << ", " << j + 1;
    }
    const auto larger = [](double a, double b) { return std::abs(a) < std::abs(b); };
    EXPECT_GT(*std::max_element(x, x + n, larger), 0.0) << "mode " << i + 1;
  }
}

// M couples unknowns that K does not: with the unknowns i and i + 3, and of rank 3 across all unknowns.
SymmetricMatrix banded_mass(std::int32_t n) {
  modaltest::Builder mass(n);
  for (std::int32_t i = 0; i < n; ++i) {
    mass.add(i, i, 2.0);
    mass.add(i, std::max(i - 3, 0), i >= 3 ? 0.5 : 0.0);
  }
  return mass.matrix();
}
SymmetricMatrix mass_of_rank_3(std::int32_t n) {
  modaltest::Builder mass(n);
  for (std::int32_t i = 0; i < n; ++i) {
    for (std::int32_t j = 0; j <= i; ++j) {
      for (const double w : {0.1, 0.23, 0.31}) {
        mass.add(i, j, std::cos(w * i) * std::cos(w * j));
      }
    }
  }
  return mass.matrix();
}

TEST(SolverModes, AgreeWithClosedForms) {
  std::vector<double> cluster(400, 5.0);
  cluster[123] = 2.0;
  std::vector<double> three_clusters(42);
  for (std::size_t i = 0; i < 42; ++i) {
    three_clusters[i] = 1.0 + static_cast<double>(i % 3);
  }
  std::vector<double> four_masses(150, 0.0);
  for (const std::size_t i : {10U, 60U, 61U, 140U}) {
    four_masses[i] = 2.0;
  }
  std::vector<double> one_mass(150, 0.0);
  one_mass[20] = 0.25;
  const SymmetricMatrix square = laplacian(21, 21);
  const std::vector<double> of_square = modaltest::laplacian_eigenvalues(21, 21);
  const SymmetricMatrix half = diagonal({1.0, 0.0, 1.0, 0.0, 1.0, 0.0, 1.0, 0.0});

  struct Case {
    std::string name;
    SymmetricMatrix k, m;
    int modes;
    std::vector<double> expected;  // empty where there is no closed form
    int below_shift = 0;           // 0: any
  };
  for (const Case& c : {
           Case{"lowest", square, identity(441), 1, of_square, 1},
           {"the first of a pair", square, identity(441), 2, of_square, 3},
           {"pairs", square, identity(441), 30, of_square},
           {"every eigenvalue threefold", laplacian(9, 8, 3), identity(216), 7,
            modaltest::laplacian_eigenvalues(9, 8, 3), 9},
           {"all", laplacian(7, 6), identity(42), 42, modaltest::laplacian_eigenvalues(7, 6), 42},
           {"one unknown", diagonal({9.0}), diagonal({4.0}), 1, {2.25}, 1},
           // More equal eigenvalues than the block has vectors: no σ behind them can be told, it stands before them.
           {"cluster wider than the block", diagonal(cluster), identity(400), 3, {2.0, 5.0, 5.0}, 1},
           // The block grows to hold them all, and what it took in has to settle too.
           {"cluster as wide as the grown block", diagonal(three_clusters), identity(42), 3, {1.0, 1.0, 1.0}, 14},
           {"nothing but a cluster", diagonal(std::vector<double>(50, 3.0)), identity(50), 2, {3.0, 3.0}},
           {"mass of another pattern", laplacian(40, 1), banded_mass(40), 5,
            solve(laplacian(40, 1), banded_mass(40), 40).eigenvalue},
           {"mass of low rank", laplacian(60, 1), mass_of_rank_3(60), 3, {}, 3},
           {"four masses, one mode", laplacian(150, 1), diagonal(four_masses), 1, {}},
           {"four masses, three modes", laplacian(150, 1), diagonal(four_masses), 3, {}},
           {"four masses, all modes", laplacian(150, 1), diagonal(four_masses), 4, {}, 4},
           {"one mass", laplacian(150, 1), diagonal(one_mass), 1, {}, 1},
           {"half the unknowns without mass", laplacian(8, 1), half, 4, {}, 4},
       }) {
    SCOPED_TRACE(c.name);
    const ModalResult result = solve(c.k, c.m, c.modes);
    expect_sound(result, c.k, c.m, c.modes);
    for (std::size_t i = 0; i < at(c.expected.empty() ? 0 : c.modes); ++i) {
      EXPECT_NEAR(result.eigenvalue[i] / c.expected[i], 1.0, 1e-10) << "mode " << i + 1;
    }
    if (c.below_shift > 0) {
      EXPECT_EQ(result.below_shift, c.below_shift);
    }
  }
  EXPECT_THROW(solve(laplacian(150, 1), diagonal(four_masses), 5), modal::NotConverged);
  EXPECT_THROW(solve(laplacian(8, 1), half, 5), modal::NotConverged);
  EXPECT_THROW(solve(laplacian(150, 1), diagonal(std::vector<double>(150, 0.0)), 1), modal::NotConverged);
}

TEST(SolverModes, RefusesWhatItCannotSolve) {
  const SymmetricMatrix k = laplacian(5, 5);
  EXPECT_THROW(solve(k, identity(25), 0), std::invalid_argument);
  EXPECT_THROW(solve(k, identity(25), 26), std::invalid_argument);
  EXPECT_THROW(solve(k, identity(24), 1), std::invalid_argument);
  std::vector<double> stiffness(30, 1.0);
  stiffness[17] = -2.0;
  try {
    solve(diagonal(stiffness), identity(30), 2);
    FAIL() << "an indefinite stiffness was accepted";
  } catch (const modal::PivotRefused& refused) {
    EXPECT_EQ(refused.equation, 18);
    EXPECT_EQ(refused.status, 34);
    EXPECT_EQ(refused.value, -1.0);
    EXPECT_EQ(refused.shift, 0.0);
  }
}

// Vectors without any component along some modes never find them. The count does, and a wider block brings them in.
TEST(SolverModes, MissedModesAreNoticedAndFound) {
  constexpr std::int32_t n = 80;
  std::vector<double> stiffness;
  for (std::int32_t i = 1; i <= n; ++i) {
    stiffness.push_back(i);
  }
  const SymmetricMatrix k = diagonal(stiffness);
  const SymmetricMatrix m = identity(n);
  const modal::AssemblyTree tree = modaltest::plan(k);
  modal::MultifrontalFactor factor(tree);
  factor.factorize(k, modal::positive_definite_rule(n), [](double /*done*/, double /*total*/) {});

  const std::int32_t block = modal::block_size(4, n);
  std::vector<double> start = zortest::Random(3).vector(at(n * block));
  for (std::size_t c = 0; c < start.size(); c += n) {
    start[c] = 0.0;
    start[c + 2] = 0.0;
  }
  modal::SubspaceIteration iteration(k, m, factor, block);
  iteration.start_from(start);
  iteration.run(4, [](const modal::IterationState& /*state*/) {});
  EXPECT_NEAR(iteration.ritz_values()[0], 2.0, 1e-9);
  EXPECT_NEAR(iteration.ritz_values()[1], 4.0, 1e-9);

  iteration.start_from(start);
  const auto phase = [](const std::function<void()>& work) { work(); };
  const modal::CheckedCount checked =
      modal::iterate_and_check(iteration, k, m, tree, 4, {phase, phase, [](const modal::IterationState& /*state*/) {}});
  EXPECT_GT(iteration.block(), block);
  EXPECT_EQ(checked.found, 4);
  EXPECT_EQ(checked.count.below, 4);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_NEAR(iteration.ritz_values()[i], stiffness[i], 1e-9);
  }
}

TEST(SolverModes, ReducedProblemLeavesOutDependentDirections) {
  // B has rank 2 in three directions, the second being twice the first; A = B·diag so that θ is known: 3 on e1, 5 on
  // e3.
  const std::vector<double> b{1.0, 2.0, 0.0, 2.0, 4.0, 0.0, 0.0, 0.0, 1e-8};
  const std::vector<double> a{3.0, 6.0, 0.0, 6.0, 12.0, 0.0, 0.0, 0.0, 5e-8};
  const modal::ReducedSolution solution = modal::solve_reduced(3, a, b);
  ASSERT_EQ(solution.value.size(), 2U);
  EXPECT_NEAR(solution.value[0], 3.0, 1e-14);
  EXPECT_NEAR(solution.value[1], 5.0, 1e-14);
  EXPECT_EQ(solution.coefficient[1], 0.0);
  EXPECT_NEAR(std::abs(solution.coefficient[0]), 1.0, 1e-14);
  EXPECT_NEAR(std::abs(solution.coefficient[5]), 1e4, 1e-10);
}

}  // namespace
