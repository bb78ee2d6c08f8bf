// SPDX-License-Identifier: MIT
// Modes against closed forms, and what happens where there are none.
#include <gtest/gtest.h>

#include <set>

#include "factorization/nested_dissection.h"
#include "modal_analysis/solver_matrices.h"
#include "modes/checked_iteration.h"
#include "modes/modal_solver.h"
#include "modes/reduced_eigenproblem.h"

namespace {

using modal::at;
using modal::ModalResult;
using modal::SymmetricMatrix;
using modaltest::Builder;

class Steps : public modal::Progress {
 public:
  void step(const char* phase, double done, double total) override {
    EXPECT_GE(done, 0.0) << phase;
    EXPECT_LE(done, total) << phase;
    phases.insert(phase);
  }
  std::set<std::string> phases;
};

ModalResult solve(const SymmetricMatrix& k, const SymmetricMatrix& m, int modes) {
  Steps steps;
  return modal::find_lowest_modes(k, m, modes, steps);
}

// Everything that must hold of any result.
void expect_sound(const ModalResult& result, const SymmetricMatrix& k, const SymmetricMatrix& m, std::size_t modes) {
  const std::size_t n = at(k.order);
  ASSERT_EQ(result.eigenvalue.size(), modes);
  ASSERT_EQ(result.mode.size(), modes * n);
  ASSERT_EQ(result.residual.size(), modes);
  EXPECT_TRUE(std::is_sorted(result.eigenvalue.begin(), result.eigenvalue.end()));
  EXPECT_EQ(result.below_shift, result.found_below_shift);
  for (std::size_t i = 0; i < modes; ++i) {
    const double* x = result.mode.data() + i * n;
    const std::vector<double> kx = modaltest::times(k, x);
    const std::vector<double> mx = modaltest::times(m, x);
    double squares = 0.0;
    double size = 0.0;
    for (std::size_t row = 0; row < n; ++row) {
      const double r = kx[row] - result.eigenvalue[i] * mx[row];
      squares += r * r;
      size += kx[row] * kx[row];
    }
    EXPECT_NEAR(std::sqrt(squares / size), result.residual[i], 1e-9);
    EXPECT_LE(result.residual[i], 2e-5) << "mode " << i + 1;
    for (std::size_t j = 0; j <= i; ++j) {
      double product = 0.0;
      for (std::size_t row = 0; row < n; ++row) {
        product += result.mode[j * n + row] * mx[row];
      }
      EXPECT_NEAR(product, i == j ? 1.0 : 0.0, 1e-11) << "modes " << i + 1 << " and " << j + 1;
    }
    const auto larger = [](double a, double b) { return std::abs(a) < std::abs(b); };
    EXPECT_GT(*std::max_element(x, x + n, larger), 0.0) << "mode " << i + 1;
  }
}

void expect_eigenvalues(const ModalResult& result, const std::vector<double>& expected) {
  for (std::size_t i = 0; i < result.eigenvalue.size(); ++i) {
    EXPECT_NEAR(result.eigenvalue[i] / expected[i], 1.0, 1e-10) << "mode " << i + 1;
  }
}

TEST(SolverModes, LaplacianWithDoubleEigenvalues) {
  const SymmetricMatrix k = modaltest::laplacian(21, 21);
  const SymmetricMatrix m = modaltest::identity(k.order);
  for (const int modes : {1, 2, 3, 7, 30}) {
    SCOPED_TRACE(modes);
    const ModalResult result = solve(k, m, modes);
    expect_sound(result, k, m, at(modes));
    expect_eigenvalues(result, modaltest::laplacian_eigenvalues(21, 21));
  }
  // The second and third are one double eigenvalue: both are below σ though one was asked for.
  EXPECT_EQ(solve(k, m, 2).below_shift, 3);
}

TEST(SolverModes, PhasesAndFigures) {
  const SymmetricMatrix k = modaltest::laplacian(30, 20);
  const SymmetricMatrix m = modaltest::identity(k.order);
  Steps steps;
  const ModalResult result = modal::find_lowest_modes(k, m, 4, steps);
  const std::set<std::string> names{"ordering", "symbolic", "factorization", "iteration", "check"};
  EXPECT_EQ(steps.phases, names);
  std::set<std::string> timed;
  for (const modal::PhaseTime& phase : result.phases) {
    timed.insert(phase.phase);
    EXPECT_GE(phase.elapsed, 0.0);
    EXPECT_GE(phase.processor, 0.0);
  }
  EXPECT_EQ(timed, names);
  EXPECT_EQ(result.phases.size(), names.size());
  EXPECT_GT(result.shift, result.eigenvalue.back());
  EXPECT_LT(result.shift, modaltest::laplacian_eigenvalues(30, 20)[4]);
  EXPECT_GT(result.factor_entries, k.entries());
  EXPECT_GE(result.largest_front, 20);
}

TEST(SolverModes, MassOfAnotherPattern) {
  // M = 2·I + T, T couples unknowns i and i + 3, which K does not: compare with inverse roles, M⁻¹·K being the
  // oracle's.
  const std::int32_t n = 40;
  Builder mass(n);
  for (std::int32_t i = 0; i < n; ++i) {
    mass.add(i, i, 2.0);
    if (i >= 3) {
      mass.add(i, i - 3, 0.5);
    }
  }
  const SymmetricMatrix k = modaltest::laplacian(n, 1);
  const SymmetricMatrix m = mass.matrix();
  const ModalResult few = solve(k, m, 5);
  const ModalResult all = solve(k, m, n);
  expect_sound(few, k, m, 5);
  expect_sound(all, k, m, at(n));
  expect_eigenvalues(few, all.eigenvalue);
}

TEST(SolverModes, AllModes) {
  const SymmetricMatrix k = modaltest::laplacian(7, 6);
  const SymmetricMatrix m = modaltest::identity(k.order);
  const ModalResult result = solve(k, m, k.order);
  expect_sound(result, k, m, at(k.order));
  expect_eigenvalues(result, modaltest::laplacian_eigenvalues(7, 6));
  EXPECT_EQ(result.below_shift, k.order);

  const ModalResult one = solve(modaltest::diagonal({9.0}), modaltest::diagonal({4.0}), 1);
  EXPECT_DOUBLE_EQ(one.eigenvalue[0], 2.25);
  EXPECT_DOUBLE_EQ(one.mode[0], 0.5);
  EXPECT_EQ(one.below_shift, 1);
}

TEST(SolverModes, DiagonalMatrices) {
  std::vector<double> stiffness;
  std::vector<double> mass;
  std::vector<double> expected;
  for (int i = 0; i < 120; ++i) {
    stiffness.push_back(1e3 * (1 + (i * 37) % 120));
    mass.push_back(1.0 + 0.01 * i);
    expected.push_back(stiffness.back() / mass.back());
  }
  std::sort(expected.begin(), expected.end());
  const SymmetricMatrix k = modaltest::diagonal(stiffness);
  const SymmetricMatrix m = modaltest::diagonal(mass);
  const ModalResult result = solve(k, m, 6);
  expect_sound(result, k, m, 6);
  expect_eigenvalues(result, expected);
}

TEST(SolverModes, SeparateStructures) {
  // Three equal grids, unconnected: every eigenvalue threefold.
  const SymmetricMatrix grid = modaltest::laplacian(9, 8);
  Builder b(3 * grid.order);
  for (std::int32_t i = 0; i < grid.order; ++i) {
    for (std::int32_t p = grid.row_end[at(i)]; p < grid.row_end[at(i) + 1]; ++p) {
      for (std::int32_t copy = 0; copy < 3; ++copy) {
        b.add(3 * i + copy, 3 * (grid.column[at(p)] - 1) + copy, grid.value[at(p)]);
      }
    }
  }
  const SymmetricMatrix k = b.matrix();
  const SymmetricMatrix m = modaltest::identity(k.order);
  const ModalResult result = solve(k, m, 7);
  expect_sound(result, k, m, 7);
  std::vector<double> expected;
  for (const double value : modaltest::laplacian_eigenvalues(9, 8)) {
    expected.insert(expected.end(), 3, value);
  }
  expect_eigenvalues(result, expected);
  EXPECT_EQ(result.below_shift, 9);
}

// More equal eigenvalues than the block has vectors: no σ behind them can be told, so the count is made before them.
TEST(SolverModes, ClusterWiderThanTheBlock) {
  std::vector<double> stiffness(400, 5.0);
  stiffness[123] = 2.0;
  const SymmetricMatrix k = modaltest::diagonal(stiffness);
  const SymmetricMatrix m = modaltest::identity(400);
  const ModalResult result = solve(k, m, 3);
  expect_sound(result, k, m, 3);
  expect_eigenvalues(result, {2.0, 5.0, 5.0});
  EXPECT_EQ(result.below_shift, 1);
  expect_eigenvalues(solve(modaltest::diagonal(std::vector<double>(50, 3.0)), modaltest::identity(50), 2), {3.0, 3.0});
}

// Mass at a few unknowns only. The finite eigenvalues are those of the structure condensed to them.
TEST(SolverModes, SingularMass) {
  const std::int32_t n = 150;
  std::vector<double> mass(at(n), 0.0);
  for (const std::size_t i : {10U, 60U, 61U, 140U}) {
    mass[i] = 2.0;
  }
  const SymmetricMatrix k = modaltest::laplacian(n, 1);
  const SymmetricMatrix m = modaltest::diagonal(mass);
  for (const int modes : {1, 3, 4}) {
    SCOPED_TRACE(modes);
    const ModalResult result = solve(k, m, modes);
    expect_sound(result, k, m, at(modes));
    if (modes == 4) {
      EXPECT_EQ(result.below_shift, 4);
    }
  }
  EXPECT_THROW(solve(k, m, 5), modal::NotConverged);
  EXPECT_THROW(solve(k, modaltest::diagonal(std::vector<double>(at(n), 0.0)), 1), modal::NotConverged);

  // One mass m on a string of springs: λ = 1/(m·flexibility), the flexibility of unknown i being k⁻¹_ii, here of a
  // chain with diagonal 4: solved by the same matrix with a unit load.
  std::vector<double> one_mass(at(n), 0.0);
  one_mass[20] = 0.25;
  const ModalResult single = solve(k, modaltest::diagonal(one_mass), 1);
  const std::vector<double> force = modaltest::times(k, single.mode.data());
  EXPECT_NEAR(force[20] / single.mode[20] / 0.25, single.eigenvalue[0], 1e-9 * single.eigenvalue[0]);
  EXPECT_NEAR(single.mode[20], 2.0, 1e-12);

  // A block of all unknowns, half of them without mass.
  const SymmetricMatrix small = modaltest::laplacian(8, 1);
  const SymmetricMatrix half = modaltest::diagonal({1.0, 0.0, 1.0, 0.0, 1.0, 0.0, 1.0, 0.0});
  const ModalResult four = solve(small, half, 4);
  expect_sound(four, small, half, 4);
  EXPECT_EQ(four.below_shift, 4);
  EXPECT_THROW(solve(small, half, 5), modal::NotConverged);
}

TEST(SolverModes, MassOfLowRankWithFullPattern) {
  // M = Σ v·vᵀ with three vectors that reach across all unknowns: no row of M is empty.
  const std::int32_t n = 60;
  Builder b(n);
  for (std::int32_t i = 0; i < n; ++i) {
    for (std::int32_t j = 0; j <= i; ++j) {
      double sum = 0.0;
      for (const double w : {0.1, 0.23, 0.31}) {
        sum += std::cos(w * i) * std::cos(w * j);
      }
      b.add(i, j, sum);
    }
  }
  const SymmetricMatrix k = modaltest::laplacian(n, 1);
  const SymmetricMatrix m = b.matrix();
  const ModalResult result = solve(k, m, 3);
  expect_sound(result, k, m, 3);
  EXPECT_EQ(result.below_shift, 3);
}

TEST(SolverModes, RefusesWhatItCannotSolve) {
  const SymmetricMatrix k = modaltest::laplacian(5, 5);
  const SymmetricMatrix m = modaltest::identity(25);
  EXPECT_THROW(solve(k, m, 0), std::invalid_argument);
  EXPECT_THROW(solve(k, m, 26), std::invalid_argument);
  EXPECT_THROW(solve(k, modaltest::identity(24), 1), std::invalid_argument);
  std::vector<double> stiffness(30, 1.0);
  stiffness[17] = -2.0;
  try {
    solve(modaltest::diagonal(stiffness), modaltest::identity(30), 2);
    FAIL() << "an indefinite stiffness was accepted";
  } catch (const modal::PivotRefused& refused) {
    EXPECT_EQ(refused.equation, 18);
    EXPECT_EQ(refused.status, 34);
    EXPECT_EQ(refused.value, -1.0);
    EXPECT_EQ(refused.shift, 0.0);
  }
}

struct Bench {
  explicit Bench(SymmetricMatrix k_) : k(std::move(k_)), m(modaltest::identity(k.order)) {
    const modal::CompressedGraph compressed = modal::compress(k);
    tree = modal::assembly_tree(compressed, modal::nested_dissection(compressed.graph));
    factor = std::make_unique<modal::MultifrontalFactor>(tree);
    factor->factorize(k, modal::positive_definite_rule(k.order), [](double, double) {});
  }
  modal::CheckedCount run(modal::SubspaceIteration& iteration, std::int32_t wanted) {
    const auto phase = [](const std::function<void()>& work) { work(); };
    return modal::iterate_and_check(iteration, k, m, tree, wanted, {phase, phase, [](double) {}});
  }
  SymmetricMatrix k;
  SymmetricMatrix m;
  modal::AssemblyTree tree;
  std::unique_ptr<modal::MultifrontalFactor> factor;
};

// Vectors without any component along some modes never find them. The count does, and a wider block brings them in.
TEST(SolverModes, MissedModesAreNoticedAndFound) {
  std::vector<double> stiffness(80);
  for (std::size_t i = 0; i < stiffness.size(); ++i) {
    stiffness[i] = 1.0 + static_cast<double>(i);
  }
  Bench bench(modaltest::diagonal(stiffness));
  const std::int32_t block = modal::block_size(4, 80);
  ASSERT_EQ(block % 4, 0);
  modal::SubspaceIteration iteration(bench.k, bench.m, *bench.factor, block);
  std::vector<double> start = zortest::Random(3).vector(at(80) * at(block));
  for (std::int32_t c = 0; c < block; ++c) {
    for (const std::size_t missing : {0U, 2U}) {
      start[at(c) * 80 + missing] = 0.0;
    }
  }
  iteration.start_from(start);
  iteration.run(4, [](double) {});
  EXPECT_NEAR(iteration.ritz_values()[0], 2.0, 1e-9);
  EXPECT_NEAR(iteration.ritz_values()[1], 4.0, 1e-9);

  iteration.start_from(start);
  const modal::CheckedCount checked = bench.run(iteration, 4);
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
