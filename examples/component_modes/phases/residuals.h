// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "parallel/part_owners.h"
#include "parallel/ranks.h"
#include "phases/own_parts.h"
#include "reduced/reduced_problem.h"

namespace component {

// ‖K·x − λ·M·x‖ / ‖K·x‖ of every mode over the whole structure, at the root. Called by all ranks together; reduced: at
// the root, null elsewhere.
std::vector<double> residuals(Ranks& ranks, const PartOwners& owners, OwnParts& own, const ReducedProblem* reduced,
                              std::span<const double> eigenvalue);

}  // namespace component
