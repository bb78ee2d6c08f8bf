// SPDX-License-Identifier: MIT
// S·u = f on all joints, S the sum of the parts' condensed stiffnesses.
#pragma once

#include <cstdint>
#include <span>

#include "factorization/assembly_tree.h"
#include "factorization/multifrontal_factor.h"
#include "services/array_memory.h"
#include "structure/symmetric_matrix.h"

namespace component {

class InterfaceSolver {
 public:
  // Throws modal::PivotRefused where the joined structure can move.
  explicit InterfaceSolver(const modal::SymmetricMatrix& stiffness);
  InterfaceSolver(const InterfaceSolver&) = delete;
  InterfaceSolver& operator=(const InterfaceSolver&) = delete;

  // load: unknowns × columns, becomes the displacements.
  void solve(std::int32_t columns, modal::Array<double>& load) const;

 private:
  modal::AssemblyTree tree_;
  modal::MultifrontalFactor factor_;
};

}  // namespace component
