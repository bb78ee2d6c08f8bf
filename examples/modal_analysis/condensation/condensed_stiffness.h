// SPDX-License-Identifier: MIT
// Static condensation (Guyan, "Reduction of stiffness and mass matrices", AIAA Journal 3, 1965):
//
//   S = K_rr − K_rc·K_cc⁻¹·K_cr,    r the retained unknowns, c all others.
//
// K_cc must be positive definite; K itself need not be.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "modes/modal_solver.h"
#include "services/array_memory.h"
#include "structure/symmetric_matrix.h"

namespace modal {

struct CondensedStiffness {
  std::int32_t order = 0;
  Array<double> lower;  // the lower triangle by columns: column j holds rows j .. order
  FactorSummary factor;

  // Element (i, j) and (j, i), from 0.
  double operator()(std::int32_t i, std::int32_t j) const;
};

// The sum in the making: K_rr, to which the update that the last front of plan_keeping leaves is added.
class RetainedBlock {
 public:
  // retained: as in condense.
  RetainedBlock(const SymmetricMatrix& matrix, std::span<const std::int32_t> retained);
  // update: packed lower triangle by columns, in the order of the tree.
  void add_update(const AssemblyTree& tree, const double* update);
  CondensedStiffness& sum() { return sum_; }

 private:
  CondensedStiffness sum_;
  std::vector<std::int32_t> rank_;  // of every unknown among the retained, -1 for the others
};

// retained: at least one unknown, from 0, none twice; S has them in this order. Throws PivotRefused.
CondensedStiffness condense(const SymmetricMatrix& stiffness, std::span<const std::int32_t> retained);

}  // namespace modal
