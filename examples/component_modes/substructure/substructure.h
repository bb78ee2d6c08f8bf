// SPDX-License-Identifier: MIT
// A part of a structure in the coordinates that component mode synthesis keeps of it:
//
//   ⎡ x_i ⎤   ⎡ Φ  Ψ ⎤ ⎡ q ⎤      Ψ = −K_ii⁻¹·K_iu, the static constraint modes;
//   ⎣ x_u ⎦ = ⎣ 0  I ⎦ ⎣ u ⎦      Φ the lowest modes with the interface held
//
// (Craig and Bampton, "Coupling of substructures for dynamic analyses", AIAA Journal 6, 1968). Ψ is never formed: it
// stands in the fronts that the partial elimination of K leaves, and half a solve with them applies it or its
// transpose.
#pragma once

#include <cstdint>
#include <span>

#include "factorization/assembly_tree.h"
#include "factorization/multifrontal_factor.h"
#include "structure/structure.h"
#include "substructure/fixed_interface_modes.h"
#include "substructure/reduced_part.h"

namespace component {

class Substructure {
 public:
  // interior: at least one; the other unknowns are those of the interface. Eliminates the interior. Throws
  // modal::PivotRefused where the part can move with its interface held.
  Substructure(modal::Structure structure, std::int32_t interior);
  Substructure(const Substructure&) = delete;
  Substructure& operator=(const Substructure&) = delete;

  // The lowest fixed-interface modes, or all where there are fewer. Throws modal::NotConverged.
  void find_modes(std::int32_t count);

  // K̂ and M̂, after find_modes.
  ReducedPart reduced() const;

  // The displacements of so many vectors of the coordinates, order × columns: first the columns of u, interface ×
  // columns, then those of q, modes × columns.
  modal::Array<double> expanded(std::int32_t columns, std::span<const double> coordinates) const;

  const modal::Structure& structure() const { return structure_; }
  std::int32_t order() const { return structure_.stiffness.order; }
  std::int32_t interior() const { return factor_.eliminated(); }
  std::int32_t interface() const { return order() - interior(); }
  const FixedInterfaceModes& modes() const { return modes_; }

 private:
  modal::Structure structure_;
  modal::AssemblyTree tree_;
  modal::MultifrontalFactor factor_;
  FixedInterfaceModes modes_;
};

}  // namespace component
