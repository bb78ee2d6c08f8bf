// SPDX-License-Identifier: MIT
// Subspace iteration on the whole structure, which no rank ever has, from the modes of the joined parts on: one step
// takes from them most of what the fixed-interface modes left out would have added. What travels is as little as in the
// expansion: displacements and forces of the interfaces, and a small square of products.
#pragma once

#include <memory>
#include <vector>

#include "parallel/part_owners.h"
#include "parallel/ranks.h"
#include "phases/own_parts.h"
#include "reduced/interface_solver.h"
#include "reduced/reduced_problem.h"

namespace component {

class Refinement {
 public:
  // reduced: all parts added to it, at the root; null elsewhere.
  Refinement(Ranks& ranks, const PartOwners& owners, OwnParts& own, const ReducedProblem* reduced);

  // Called by all ranks together. eigenvalue: of the modes that the parts hold; both are replaced.
  void step(std::vector<double>& eigenvalue);

 private:
  void send_loads(int modes);
  void spread(int modes);
  std::vector<double> gather_products(int modes);
  void solve_small(const std::vector<double>& products, std::vector<double>& eigenvalue,
                   std::vector<double>& coefficient) const;

  Ranks& ranks_;
  const PartOwners& owners_;
  OwnParts& own_;
  const ReducedProblem* reduced_;
  std::unique_ptr<InterfaceSolver> interface_;  // at the root, where there are joints
  modal::Array<double> joint_;                  // there: joint unknowns × modes
};

}  // namespace component
