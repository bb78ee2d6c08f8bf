// SPDX-License-Identifier: MIT
// A part's share in one step of subspace iteration on the whole structure, Z = K⁻¹·M·X, X the modes found so far.
//
// With f = M·X, its rows on interfaces being sums over the parts, the solve is a static condensation (Przemieniecki,
// "Matrix structural analysis of substructures", AIAA Journal 1, 1963):
//
//   S·Z_u = f_u − K_ui·K_ii⁻¹·f_i,    Z_i = K_ii⁻¹·f_i − K_ii⁻¹·K_iu·Z_u
//
// A part works on its interior; the sums of S and of the right-hand sides over the parts are the root's.
#pragma once

#include <cstdint>
#include <span>

#include "services/array_memory.h"
#include "substructure/substructure.h"

namespace component {

class InverseStep {
 public:
  // mode: order × columns. The part must outlive the step.
  InverseStep(const Substructure& part, std::int32_t columns, const modal::Array<double>& mode);

  // This part's right-hand sides on its interface: interface × columns.
  modal::Array<double> interface_load() const;

  // Takes Z_u, interface × columns, and completes Z.
  void solve(std::span<const double> displacement);

  // This part's shares of Zᵀ·K·Z and Zᵀ·M·Z, columns × columns each.
  modal::Array<double> products() const;

  // Z·C, C columns × columns: the next modes.
  modal::Array<double> combined(std::span<const double> coefficient) const;

 private:
  const Substructure& part_;
  std::int32_t columns_;
  modal::Array<double> f_;  // order × columns
  modal::Array<double> z_;  // order × columns
};

}  // namespace component
