// SPDX-License-Identifier: MIT
// Static condensation (Guyan, "Reduction of stiffness and mass matrices", AIAA Journal 3, 1965):
//
//   S = K_rr − K_rc·K_cc⁻¹·K_cr,    r the retained unknowns, c all others.
//
// K_cc must be positive definite; K itself need not be.
#pragma once

#include <cstdint>
#include <span>

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

// retained: at least one unknown, from 0, none twice; S has them in this order. Throws PivotRefused.
CondensedStiffness condense(const SymmetricMatrix& stiffness, std::span<const std::int32_t> retained);

}  // namespace modal
