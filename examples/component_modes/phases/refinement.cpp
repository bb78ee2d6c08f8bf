// SPDX-License-Identifier: MIT
#include "phases/refinement.h"

#include <algorithm>
#include <functional>

#include "factorization/index.h"
#include "joints/joint_values.h"
#include "modes/modal_solver.h"
#include "modes/reduced_eigenproblem.h"

namespace component {

using modal::at;

Refinement::Refinement(Ranks& ranks, const PartOwners& owners, OwnParts& own, const ReducedProblem* reduced)
    : ranks_(ranks), owners_(owners), own_(own), reduced_(reduced) {
  if (reduced != nullptr && reduced->joint_unknowns() > 0) {
    interface_ = std::make_unique<InterfaceSolver>(reduced->joint_stiffness());
  }
}

void Refinement::step(std::vector<double>& eigenvalue) {
  const auto modes = static_cast<int>(eigenvalue.size());
  send_loads(modes);
  if (interface_) {
    interface_->solve(modes, joint_);
  }
  spread(modes);
  const std::vector<double> products = gather_products(modes);
  std::vector<double> coefficient(at(modes) * at(modes));
  if (ranks_.is_root()) {
    solve_small(products, eigenvalue, coefficient);
  }
  ranks_.broadcast(eigenvalue);
  ranks_.broadcast(coefficient);
  own_.each([&](OwnPart& part) {
    part.mode = part.step->combined(coefficient);
    part.step.reset();
  });
}

void Refinement::send_loads(int modes) {
  if (ranks_.is_root()) {
    joint_.assign(at(reduced_->joint_unknowns()) * at(modes), 0.0);
  }
  to_root(
      ranks_, owners_,
      [&](int p) {
        return own_.of(p, [&](OwnPart& part) {
          part.step = std::make_unique<InverseStep>(*part.substructure, modes, part.mode);
          return part.step->interface_load();
        });
      },
      [&](int p, const modal::Array<double>& load) {
        add_to_joints(reduced_->interface_of(p), at(modes), load, joint_);
      });
}

void Refinement::spread(int modes) {
  from_root(
      ranks_, owners_, [&](int p) { return from_joints(reduced_->interface_of(p), at(modes), joint_); },
      [&](int p, const modal::Array<double>& displacement) {
        own_.of(p, [&](OwnPart& part) { part.step->solve(displacement); });
      });
}

std::vector<double> Refinement::gather_products(int modes) {
  std::vector<double> sum(2 * at(modes) * at(modes), 0.0);
  to_root(
      ranks_, owners_, [&](int p) { return own_.of(p, [](OwnPart& part) { return part.step->products(); }); },
      [&](int, const modal::Array<double>& products) {
        std::transform(sum.begin(), sum.end(), products.begin(), sum.begin(), std::plus<>());
      });
  return sum;
}

void Refinement::solve_small(const std::vector<double>& products, std::vector<double>& eigenvalue,
                             std::vector<double>& coefficient) const {
  const auto square = static_cast<std::ptrdiff_t>(coefficient.size());
  modal::ReducedSolution solution =
      modal::solve_reduced(static_cast<std::int32_t>(eigenvalue.size()), {products.begin(), products.begin() + square},
                           {products.begin() + square, products.end()});
  if (solution.value.size() != eigenvalue.size()) {
    throw modal::NotConverged("the refinement finds modes that depend on each other");
  }
  eigenvalue = std::move(solution.value);
  coefficient = std::move(solution.coefficient);
}

}  // namespace component
