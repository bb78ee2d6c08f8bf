// SPDX-License-Identifier: MIT
// The structure in the coordinates of its parts: the displacements of all joints, then the modal amplitudes of the parts
// one after the other. Sparse: an interface couples with the other interfaces of its own parts only.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "modes/modal_solver.h"
#include "structure/symmetric_matrix.h"
#include "substructure/reduced_part.h"

namespace component {

class ReducedProblem {
 public:
  // interface: of every part, its interface unknowns in the part's order as numbers among those of all joints.
  ReducedProblem(std::vector<std::vector<std::int32_t>> interface, std::int32_t joint_unknowns);

  // The parts in their order.
  void add(const ReducedPart& part);

  // Once all are added. Throws modal::PivotRefused where the joined structure can move, modal::NotConverged.
  modal::ModalResult solve(std::int32_t modes) const;

  // A part's coordinates in the modes found, as Substructure::expanded takes them.
  modal::Array<double> share(int part, const modal::ModalResult& result) const;

  std::int32_t order() const { return stiffness_.order; }
  std::int32_t joint_unknowns() const { return joint_unknowns_; }
  const std::vector<std::int32_t>& interface_of(int part) const { return interface_[modal::at(part)]; }

 private:
  void make_joint_rows();

  std::vector<std::vector<std::int32_t>> interface_;
  std::int32_t joint_unknowns_;
  std::vector<std::int32_t> first_mode_;  // of the parts added, and the order
  modal::SymmetricMatrix stiffness_;
  modal::SymmetricMatrix mass_;
};

}  // namespace component
