// SPDX-License-Identifier: MIT
#include "phases/residuals.h"

#include "substructure/residual_forces.h"

namespace component {

std::vector<double> residuals(Ranks& ranks, const PartOwners& owners, OwnParts& own, const ReducedProblem* reduced,
                              std::span<const double> eigenvalue) {
  ForceSums sums(static_cast<int>(eigenvalue.size()), ranks.is_root() ? reduced->joint_unknowns() : 0);
  to_root(
      ranks, owners,
      [&](int p) {
        return own.of(p, [&](OwnPart& part) { return sums.add_part(*part.substructure, eigenvalue, part.mode); });
      },
      [&](int p, const modal::Array<double>& forces) { sums.add_interface(reduced->interface_of(p), forces); });
  ranks.sum(sums.interior());
  return sums.residuals();
}

}  // namespace component
