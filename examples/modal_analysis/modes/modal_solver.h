// SPDX-License-Identifier: MIT
// The lowest eigenpairs of K·x = λ·M·x by subspace iteration on a multifrontal factorization of K.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "factorization/assembly_tree.h"
#include "modes/subspace_iteration.h"
#include "services/array_memory.h"
#include "structure/symmetric_matrix.h"

namespace modal {

// Of the factorization of K.
struct FactorSummary {
  std::int32_t fronts = 0;
  std::int32_t largest_front = 0;   // order
  std::int64_t factor_entries = 0;  // stored entries of L
  std::int64_t stack_entries = 0;   // most that waited to be added into a front
  double operations = 0.0;
  double smallest_ratio = 0.0;  // of a pivot to its initial diagonal
};

// Told by the solver what it is doing; the report draws a progress bar and writes the listing from it.
class Progress {
 public:
  virtual ~Progress() = default;
  // A phase begins or goes on: done of total steps.
  virtual void step(const char* phase, double done, double total) = 0;
  virtual void factored(const FactorSummary& /*summary*/) {}
  virtual void iterated(const IterationState& /*state*/) {}
};

struct PhaseTime {
  std::string phase;
  double elapsed;    // seconds
  double processor;  // seconds
};

struct ModalResult {
  std::vector<double> eigenvalue;  // ascending, (rad/s)² for the built-in model
  Array<double> mode;              // order × modes, column by column, M-normalised, sign fixed
  std::vector<double> residual;    // ‖K·x − λ·M·x‖ / ‖K·x‖
  int iterations = 0;
  double shift = 0.0;         // σ of the final check, just above the last mode found
  int below_shift = 0;        // eigenvalues below σ: negative pivots of K − σ·M
  int found_below_shift = 0;  // converged modes below σ
  FactorSummary factor;
  std::vector<PhaseTime> phases;
};

// K, or K − σ·M in the check, could not be factored.
struct PivotRefused : std::runtime_error {
  PivotRefused(std::int32_t equation_, std::int32_t status_, double value_, double shift_);
  std::int32_t equation;  // from 1, in the numbering of the matrix as given
  std::int32_t status;    // 6: pivot too small, 34: pivot not positive against its initial diagonal
  double value;           // status 6: the pivot; status 34: its ratio to the initial diagonal
  double shift;           // σ; 0 for K itself
};

// The iteration did not converge, or the reduced problem could not be solved.
struct NotConverged : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// What the plan of a factorization tells of it.
FactorSummary summary(const AssemblyTree& tree);

// modes: 1 .. order of K. M has the order of K and is positive definite or semi-definite.
ModalResult find_lowest_modes(const SymmetricMatrix& stiffness, const SymmetricMatrix& mass, int modes,
                              Progress& progress);

}  // namespace modal
