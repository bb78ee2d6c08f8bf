// SPDX-License-Identifier: MIT
// What a part is to the others once its interior is condensed: the only matrices that travel.
//
// In the coordinates (u, q), u the displacements of its interface and q the amplitudes of its fixed-interface modes:
//
//   K̂ = ⎡ S  0 ⎤    M̂ = ⎡ M_u  Cᵀ ⎤
//       ⎣ 0  Λ ⎦        ⎣ C    I  ⎦
#pragma once

#include <cstdint>
#include <span>

#include "factorization/index.h"
#include "services/array_memory.h"

namespace component {

class ReducedPart {
 public:
  ReducedPart(std::int32_t interface, std::int32_t modes)
      : interface_(interface),
        modes_(modes),
        value_(2 * triangle() + modal::at(modes) * modal::at(interface) + modal::at(modes), 0.0) {}
  // As it has travelled.
  ReducedPart(std::int32_t interface, modal::Array<double> message)
      : interface_(interface),
        modes_(static_cast<std::int32_t>((message.size() - 2 * triangle()) / (modal::at(interface) + 1))),
        value_(std::move(message)) {}

  std::int32_t interface() const { return interface_; }
  std::int32_t modes() const { return modes_; }

  // S and M_u: packed lower triangles by columns.
  double* stiffness() { return value_.data(); }
  const double* stiffness() const { return value_.data(); }
  double* mass() { return value_.data() + triangle(); }
  const double* mass() const { return value_.data() + triangle(); }
  // C: modes × interface, column by column.
  double* coupling() { return value_.data() + 2 * triangle(); }
  const double* coupling() const { return value_.data() + 2 * triangle(); }
  // The diagonal of Λ.
  double* eigenvalue() { return coupling() + modal::at(modes_) * modal::at(interface_); }
  const double* eigenvalue() const { return coupling() + modal::at(modes_) * modal::at(interface_); }

  const modal::Array<double>& message() const { return value_; }

 private:
  std::size_t triangle() const { return modal::at(std::int64_t{interface_} * (interface_ + 1) / 2); }

  std::int32_t interface_;
  std::int32_t modes_;
  modal::Array<double> value_;
};

}  // namespace component
