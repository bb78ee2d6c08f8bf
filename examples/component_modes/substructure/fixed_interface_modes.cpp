// SPDX-License-Identifier: MIT
#include "substructure/fixed_interface_modes.h"

#include <algorithm>
#include <functional>

#include "factorization/index.h"
#include "modes/checked_iteration.h"
#include "modes/subspace_iteration.h"

namespace component {
namespace {

using modal::at;

// The first rows and columns.
modal::SymmetricMatrix leading(const modal::SymmetricMatrix& matrix, std::int32_t order) {
  modal::SymmetricMatrix block;
  const auto entries = static_cast<std::ptrdiff_t>(matrix.row_end[at(order)]);
  block.order = order;
  block.row_end.assign(matrix.row_end.begin(), matrix.row_end.begin() + order + 1);
  block.column.assign(matrix.column.begin(), matrix.column.begin() + entries);
  block.value.assign(matrix.value.begin(), matrix.value.begin() + entries);
  return block;
}

}  // namespace

FixedInterfaceModes fixed_interface_modes(const modal::SymmetricMatrix& stiffness, const modal::SymmetricMatrix& mass,
                                          const modal::AssemblyTree& tree, const modal::MultifrontalFactor& factor,
                                          std::int32_t count) {
  const std::int32_t interior = factor.eliminated();
  const modal::SymmetricMatrix k = leading(stiffness, interior);
  const modal::SymmetricMatrix m = leading(mass, interior);
  modal::SubspaceIteration iteration(k, m, factor, modal::block_size(count, interior));
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
