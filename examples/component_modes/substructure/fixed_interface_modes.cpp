// SPDX-License-Identifier: MIT
#include "substructure/fixed_interface_modes.h"

#include <algorithm>
#include <functional>

#include "factorization/index.h"
#include "modes/checked_iteration.h"
#include "modes/subspace_iteration.h"
#include "substructure/leading_block.h"

namespace component {
namespace {

using modal::at;

// Eigenvalues to six digits. The modes enter the joined problem as a basis, and theirs is a Ritz basis however loosely it
// has settled: what is not yet theirs weighs nothing beside what the modes left out would have added.
constexpr double looseness = 1e5;

}  // namespace

FixedInterfaceModes fixed_interface_modes(const modal::SymmetricMatrix& stiffness, const modal::SymmetricMatrix& mass,
                                          const modal::AssemblyTree& tree, const modal::MultifrontalFactor& factor,
                                          std::int32_t count) {
  const std::int32_t interior = factor.eliminated();
  const modal::SymmetricMatrix k = leading_block(stiffness, interior);
  const modal::SymmetricMatrix m = leading_block(mass, interior);
  modal::SubspaceIteration iteration(k, m, factor, modal::block_size(count, interior), looseness);
  const auto simply = [](const std::function<void()>& work) { work(); };
  const modal::CheckedCount checked = modal::iterate_and_check(
      iteration, k, m, tree, count, {simply, simply, [](const modal::IterationState& /*state*/) {}});

  FixedInterfaceModes modes;
  modes.none_missed = checked.count.below == checked.found;
  modes.eigenvalue.assign(iteration.ritz_values().begin(), iteration.ritz_values().begin() + count);
  modes.mode.assign(at(stiffness.order) * at(count), 0.0);
  for (std::size_t c = 0; c < at(count); ++c) {
    std::copy_n(iteration.ritz_vectors().data() + c * at(interior), interior,
                modes.mode.data() + c * at(stiffness.order));
  }
  return modes;
}

}  // namespace component
