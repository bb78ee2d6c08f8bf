// SPDX-License-Identifier: MIT
#include "modes/checked_iteration.h"

#include <algorithm>
#include <limits>

#include "factorization/index.h"

namespace modal {
namespace {

// A wider block has at most this many times the vectors, so that a wrong count cannot exhaust the memory.
constexpr std::int32_t widening_limit = 4;

// Nearer than this, relatively, nothing can be counted between two eigenvalues.
constexpr double no_gap = 1e-7;

double relative_gap(const std::vector<double>& value, std::size_t i) {
  return i < value.size() ? (value[i] - value[i - 1]) / value[i] : std::numeric_limits<double>::infinity();
}

// Counts behind the last converged eigenvalue; when the block ends within a cluster of eigenvalues, before that
// cluster.
CheckedCount check(const SubspaceIteration& iteration, const SymmetricMatrix& k, const SymmetricMatrix& m,
                   const AssemblyTree& tree) {
  const std::vector<double>& value = iteration.ritz_values();
  std::size_t found = at(iteration.converged());
  if (relative_gap(value, found) <= no_gap) {
    while (found > 0 && relative_gap(value, found) <= cluster_gap) {
      --found;
    }
  }
  const double low = found > 0 ? value[found - 1] : 0.0;
  const double high = found < value.size() ? value[found] : std::numeric_limits<double>::infinity();
  return {count_eigenvalues(k, m, tree, low, high), static_cast<std::int32_t>(found)};
}

}  // namespace

CheckedCount iterate_and_check(SubspaceIteration& iteration, const SymmetricMatrix& k, const SymmetricMatrix& m,
                               const AssemblyTree& tree, std::int32_t wanted, const PhaseHooks& hooks) {
  bool repeated = false;
  for (bool widened = false;; widened = true) {
    hooks.iterate([&] { iteration.run(wanted, hooks.report); });
    const bool can_widen = !widened && iteration.block() < k.order;
    std::int32_t missed = iteration.block();
    if (!can_widen || relative_gap(iteration.ritz_values(), at(iteration.converged())) > no_gap) {
      CheckedCount result;
      hooks.check([&] { result = check(iteration, k, m, tree); });
      missed = result.count.below - result.found;
      if (!can_widen && missed > 0 && !repeated && result.count.below <= iteration.block()) {
        // The pairs found before have settled while the vectors added had no time to: all that were counted are wanted.
        repeated = true;
        wanted = result.count.below;
        continue;
      }
      if (!can_widen || missed <= 0) {
        return result;
      }
    }
    const std::int32_t block = std::min(iteration.block() + missed, widening_limit * iteration.block());
    iteration.widen(block_size((block + 1) / 2, k.order));
  }
}

}  // namespace modal
