// SPDX-License-Identifier: MIT
#include "substructure/residual_forces.h"

#include <cmath>
#include <cstddef>

#include "factorization/index.h"
#include "modes/block_operations.h"

namespace component {

using modal::at;

ForceSums::ForceSums(int modes, std::int32_t joint_unknowns)
    : modes_(at(modes)),
      joint_unknowns_(at(joint_unknowns)),
      interior_(2 * modes_, 0.0),
      joint_(2 * modes_ * joint_unknowns_, 0.0) {}

modal::Array<double> ForceSums::add_part(const Substructure& part, std::span<const double> eigenvalue,
                                         const modal::Array<double>& mode) {
  const std::int32_t n = part.order();
  const auto columns = static_cast<std::int32_t>(modes_);
  modal::Array<double> kx(mode.size());
  modal::Array<double> residual(mode.size());
  modal::multiply(part.structure().stiffness, columns, mode.data(), kx.data());
  modal::multiply(part.structure().mass, columns, mode.data(), residual.data());
  for (std::size_t c = 0; c < modes_; ++c) {
    modal::scale(n, -eigenvalue[c], residual.data() + c * at(n));
    modal::add_multiple(n, 1.0, kx.data() + c * at(n), residual.data() + c * at(n));
  }

  modal::Array<double> forces;
  forces.reserve(2 * modes_ * at(part.interface()));
  double* square = interior_.data();
  for (const auto* block : {&residual, &kx}) {
    for (std::size_t c = 0; c < modes_; ++c) {
      const double* column = block->data() + c * at(n);
      const double length = modal::norm(part.interior(), column);
      *square++ += length * length;
      forces.insert(forces.end(), column + part.interior(), column + n);
    }
  }
  return forces;
}

void ForceSums::add_interface(std::span<const std::int32_t> unknown, std::span<const double> forces) {
  for (std::size_t c = 0; c < 2 * modes_; ++c) {
    for (std::size_t i = 0; i < unknown.size(); ++i) {
      joint_[c * joint_unknowns_ + at(unknown[i])] += forces[c * unknown.size() + i];
    }
  }
}

std::vector<double> ForceSums::residuals() const {
  std::vector<double> square = interior_;
  for (std::size_t c = 0; c < 2 * modes_; ++c) {
    const double length = modal::norm(static_cast<std::int32_t>(joint_unknowns_), joint_.data() + c * joint_unknowns_);
    square[c] += length * length;
  }
  std::vector<double> residual;
  for (std::size_t c = 0; c < modes_; ++c) {
    residual.push_back(std::sqrt(square[c] / square[modes_ + c]));
  }
  return residual;
}

}  // namespace component
