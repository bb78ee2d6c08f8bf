// SPDX-License-Identifier: MIT
// The lowest modes of a part whose interface is held: K_ii·φ = λ·M_ii·φ, φᵀ·M_ii·φ = 1.
#pragma once

#include <cstdint>
#include <vector>

#include "factorization/multifrontal_factor.h"
#include "structure/symmetric_matrix.h"

namespace component {

struct FixedInterfaceModes {
  std::vector<double> eigenvalue;  // ascending
  modal::Array<double> mode;       // order of K × modes, column by column: zero in the rows of the interface
  bool none_missed = true;         // as the count of negative pivots has it
};

// factor: of K, which eliminates the interior; tree: its plan. count: 1 .. unknowns of the interior.
FixedInterfaceModes fixed_interface_modes(const modal::SymmetricMatrix& stiffness, const modal::SymmetricMatrix& mass,
                                          const modal::AssemblyTree& tree, const modal::MultifrontalFactor& factor,
                                          std::int32_t count);

}  // namespace component
