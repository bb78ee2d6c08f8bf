// SPDX-License-Identifier: MIT
// How well the modes found satisfy K·x = λ·M·x in the whole structure, which no rank ever has: norms over the interiors
// add up, and what the parts exert on their interfaces is added up before its norm is taken.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "substructure/substructure.h"

namespace component {

class ForceSums {
 public:
  ForceSums(int modes, std::int32_t joint_unknowns);

  // Adds a part's interior; returns its forces on the interface: interface × modes of K·x − λ·M·x, then of K·x.
  modal::Array<double> add_part(const Substructure& part, std::span<const double> eigenvalue,
                                const modal::Array<double>& mode);
  // At the root: adds such forces, whose unknowns have these numbers among those of all joints.
  void add_interface(std::span<const std::int32_t> unknown, std::span<const double> forces);

  // The sums over this rank's parts, to be added up over the ranks.
  std::span<double> interior() { return interior_; }
  // ‖K·x − λ·M·x‖ / ‖K·x‖ of every mode, at the root.
  std::vector<double> residuals() const;

 private:
  std::size_t modes_;
  std::size_t joint_unknowns_;
  std::vector<double> interior_;  // per mode: squares of K·x − λ·M·x, then of K·x
  modal::Array<double> joint_;    // joint unknowns × modes of the one, then of the other
};

}  // namespace component
