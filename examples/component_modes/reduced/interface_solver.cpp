// SPDX-License-Identifier: MIT
#include "reduced/interface_solver.h"

#include "factorization/compressed_graph.h"
#include "factorization/front_elimination.h"
#include "factorization/nested_dissection.h"
#include "modes/modal_solver.h"

namespace component {
namespace {

modal::AssemblyTree plan(const modal::SymmetricMatrix& matrix) {
  const modal::CompressedGraph compressed = modal::compress(matrix);
  return modal::assembly_tree(compressed, modal::nested_dissection(compressed.graph));
}

}  // namespace

InterfaceSolver::InterfaceSolver(const modal::SymmetricMatrix& stiffness) : tree_(plan(stiffness)), factor_(tree_) {
  const modal::Elimination elimination =
      factor_.factorize(stiffness, modal::positive_definite_rule(stiffness.order), [](double, double) {});
  if (elimination.refusal) {
    throw modal::PivotRefused(elimination.refusal->equation, elimination.refusal->status, elimination.refusal->value,
                              0.0);
  }
}

void InterfaceSolver::solve(std::int32_t columns, modal::Array<double>& load) const {
  factor_.solve(columns, load.data());
}

}  // namespace component
