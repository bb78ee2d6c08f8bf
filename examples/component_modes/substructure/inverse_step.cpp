// SPDX-License-Identifier: MIT
#include "substructure/inverse_step.h"

#include <algorithm>

#include "factorization/index.h"
#include "modes/block_operations.h"

namespace component {

using modal::at;

InverseStep::InverseStep(const Substructure& part, std::int32_t columns, const modal::Array<double>& mode)
    : part_(part), columns_(columns), f_(mode.size()) {
  modal::multiply(part.structure().mass, columns, mode.data(), f_.data());
}

modal::Array<double> InverseStep::interface_load() const {
  const std::size_t n = at(part_.order());
  const std::size_t interior = at(part_.interior());
  modal::Array<double> condensed = f_;
  part_.factor().condense(columns_, condensed.data());
  modal::Array<double> load;
  load.reserve(at(part_.interface()) * at(columns_));
  for (std::size_t c = 0; c < at(columns_); ++c) {
    load.insert(load.end(), condensed.data() + c * n + interior, condensed.data() + (c + 1) * n);
  }
  return load;
}

void InverseStep::solve(std::span<const double> displacement) {
  const std::int32_t n = part_.order();
  const std::size_t interior = at(part_.interior());
  const std::size_t interface = at(part_.interface());
  modal::Array<double> held(interior * at(columns_));  // K_ii⁻¹·f_i
  for (std::size_t c = 0; c < at(columns_); ++c) {
    std::copy_n(f_.data() + c * at(n), interior, held.data() + c * interior);
  }
  part_.factor().solve(columns_, held.data());

  z_.assign(f_.size(), 0.0);
  for (std::size_t c = 0; c < at(columns_); ++c) {
    std::copy_n(displacement.data() + c * interface, interface, z_.data() + c * at(n) + interior);
  }
  if (interface > 0) {
    part_.factor().extend(columns_, z_.data());
  }
  for (std::size_t c = 0; c < at(columns_); ++c) {
    modal::add_multiple(part_.interior(), 1.0, held.data() + c * interior, z_.data() + c * at(n));
  }
}

modal::Array<double> InverseStep::products() const {
  const std::int32_t n = part_.order();
  const std::size_t square = at(columns_) * at(columns_);
  modal::Array<double> products(2 * square);
  modal::Array<double> image(z_.size());
  modal::multiply(part_.structure().stiffness, columns_, z_.data(), image.data());
  modal::inner_products(n, columns_, z_.data(), columns_, image.data(), products.data());
  modal::multiply(part_.structure().mass, columns_, z_.data(), image.data());
  modal::inner_products(n, columns_, z_.data(), columns_, image.data(), products.data() + square);
  return products;
}

modal::Array<double> InverseStep::combined(std::span<const double> coefficient) const {
  modal::Array<double> mode(z_.size());
  modal::combine(part_.order(), columns_, z_.data(), columns_, coefficient.data(), mode.data());
  return mode;
}

}  // namespace component
