// SPDX-License-Identifier: MIT
// Subspace iteration, then the count that shows whether every eigenvalue below the last one found was found.
#pragma once

#include <cstdint>
#include <functional>

#include "modes/eigenvalue_count.h"
#include "modes/subspace_iteration.h"

namespace modal {

struct CheckedCount {
  EigenvalueCount count{0.0, 0};
  std::int32_t found = 0;  // converged eigenvalues below count.shift
};

// What is done around the two phases, such as taking their times.
struct PhaseHooks {
  std::function<void(const std::function<void()>&)> iterate;  // runs its argument
  std::function<void(const std::function<void()>&)> check;    // runs its argument
  SubspaceIteration::Report report;
};

// When the count shows missed eigenvalues, the block is widened by as many vectors and some and iterated once more.
// What the second count says stands.
CheckedCount iterate_and_check(SubspaceIteration& iteration, const SymmetricMatrix& k, const SymmetricMatrix& m,
                               const AssemblyTree& tree, std::int32_t wanted, const PhaseHooks& hooks);

}  // namespace modal
