// SPDX-License-Identifier: MIT
// The lowest eigenpairs of K·x = λ·M·x, K positive definite, by iterating a block of vectors.
//
// One iteration: Z = K⁻¹·M·X, then the Ritz pairs of the pencil in the span of Z (Bathe and Wilson, "Large eigenvalue
// problems in dynamic analysis", J. Eng. Mech. Div. ASCE 98, 1972). The error of eigenvalue i falls by the factor
// (λ_i / λ_{q+1})² in each, q the number of vectors.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "factorization/multifrontal_factor.h"
#include "structure/symmetric_matrix.h"

namespace modal {

// Neighbouring eigenvalues nearer than this, relatively, are treated as one cluster.
inline constexpr double cluster_gap = 1e-4;

// Vectors for so many modes: enough for a fair rate, and whole groups of four for the sparse product; at most order.
std::int32_t block_size(std::int32_t modes, std::int32_t order);

// Where the iteration stands after one step.
struct IterationState {
  int number;           // from 1, over all runs
  std::int32_t block;   // vectors
  std::int32_t kept;    // of them independent
  std::int32_t wanted;  // pairs that must converge, whole clusters
  double change;        // largest relative change of their eigenvalues
  double defect;        // largest squared residual in the norm of K⁻¹ over the eigenvalue
  double share;         // how far the convergence has come, 0 .. 1
};

class SubspaceIteration {
 public:
  // Told after each iteration.
  using Report = std::function<void(const IterationState& state)>;

  // The matrices and the factor of K must outlive the iteration. The block starts pseudo-random, the same in every run;
  // a block of as many vectors as unknowns starts from the unit vectors. looseness: how many times the usual error an
  // eigenvalue may have.
  SubspaceIteration(const SymmetricMatrix& k, const SymmetricMatrix& m, const MultifrontalFactor& factor,
                    std::int32_t block, double looseness = 1.0);

  // Starts from given vectors instead: order × block.
  void start_from(std::span<const double> x);

  // Adds pseudo-random vectors to the block.
  void widen(std::int32_t block);

  // Until the lowest `wanted` pairs and those in one cluster with the last of them have converged. Throws NotConverged.
  void run(std::int32_t wanted, const Report& report);

  std::int32_t block() const { return block_; }
  int iterations() const { return iterations_; }
  // Pairs converged in the last run: at least those wanted.
  std::int32_t converged() const { return converged_; }
  // The block holds every eigenvalue that the pencil has.
  bool complete() const;
  const std::vector<double>& ritz_values() const { return value_; }
  // The Ritz vectors, order × ritz_values().size().
  const Array<double>& ritz_vectors() const { return x_; }

 private:
  void iterate();
  void fill_up();
  std::int32_t end_of_cluster(std::int32_t wanted) const;
  double excess(bool stalled) const;
  IterationState state(std::int32_t wanted, double share) const;

  const SymmetricMatrix& k_;
  const SymmetricMatrix& m_;
  const MultifrontalFactor& factor_;
  std::int32_t block_;
  double looseness_;
  bool unit_start_ = false;
  std::uint64_t random_state_;
  int iterations_ = 0;
  std::int32_t converged_ = 0;
  int full_for_ = 0;  // iterations in a row that found the same rank below the block's size
  Array<double> x_;   // order × block
  Array<double> mx_;  // M·x
  Array<double> z_;
  std::vector<double> value_;   // Ritz values
  std::vector<double> change_;  // their relative changes in the last iteration
  std::vector<double> defect_;  // ‖K·x − θ·M·x‖² / θ in the norm of K⁻¹, before the last iteration
};

}  // namespace modal
