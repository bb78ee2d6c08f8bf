// SPDX-License-Identifier: MIT
// Which columns of the elimination tree become one front.
#pragma once

#include <cstdint>
#include <vector>

#include "factorization/elimination_tree.h"

namespace modal {

// A tree of fronts over positions of the elimination order; a front bears the number of its last column.
struct MergedFronts {
  std::vector<std::int32_t> root;                   // per column: the front it belongs to
  std::vector<std::int32_t> pivots;                 // per front: unknowns eliminated
  std::vector<std::int32_t> order;                  // per front
  std::vector<std::vector<std::int32_t>> children;  // per front, in the order in which they are to be eliminated
  std::int64_t stack_entries = 0;                   // most update entries that wait at any time
};

// column_weight: unknowns per column of the tree. kept_columns: the last so many, which all follow each other in the
// tree, become one front that takes in no other.
MergedFronts merge_fronts(const EliminationTree& tree, const std::vector<std::int32_t>& column_weight,
                          std::int32_t kept_columns);

}  // namespace modal
