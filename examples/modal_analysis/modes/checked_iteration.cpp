// SPDX-License-Identifier: MIT
#include "modes/checked_iteration.h"

#include <algorithm>
#include <limits>

#include "factorization/index.h"

namespace modal {
namespace {

// A wider block has at most this many times the vectors, so that a wrong count cannot exhaust the memory.
constexpr std::int32_t widening_limit = 4;

CheckedCount check(const SubspaceIteration& iteration, const SymmetricMatrix& k, const SymmetricMatrix& m,
                   const AssemblyTree& tree) {
  const std::vector<double>& value = iteration.ritz_values();
  const std::size_t found = at(iteration.converged());
  const double high = found < value.size() ? value[found] : std::numeric_limits<double>::infinity();
  return {count_eigenvalues(k, m, tree, value[found - 1], high), iteration.converged()};
}

}  // namespace

CheckedCount iterate_and_check(SubspaceIteration& iteration, const SymmetricMatrix& k, const SymmetricMatrix& m,
                               const AssemblyTree& tree, std::int32_t wanted, const PhaseHooks& hooks) {
  CheckedCount result;
  hooks.iterate([&] { iteration.run(wanted, hooks.report); });
  hooks.check([&] { result = check(iteration, k, m, tree); });
  const std::int32_t missed = result.count.below - result.found;
  if (missed <= 0 || iteration.block() == k.order) {
    return result;
  }
  const std::int32_t wider =
      std::min(block_size(iteration.block() / 2 + missed, k.order), widening_limit * iteration.block());
  hooks.iterate([&] {
    iteration.widen(std::min(wider, k.order));
    iteration.run(wanted, hooks.report);
  });
  hooks.check([&] { result = check(iteration, k, m, tree); });
  return result;
}

}  // namespace modal
