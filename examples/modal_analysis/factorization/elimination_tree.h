// SPDX-License-Identifier: MIT
// The elimination tree of a symmetric pattern and the size of every column of the factor.
//
// parent(j) = min { i > j : L(i,j) ≠ 0 }. Liu, "The role of elimination trees in sparse factorization", SIAM J. Matrix
// Anal. Appl. 11, 1990: the tree by path compression, the columns by walking every row's subtree.
#pragma once

#include <cstdint>
#include <vector>

#include "factorization/graph.h"

namespace modal {

struct EliminationTree {
  std::vector<std::int32_t> parent;       // per position in the order; -1 at a root
  std::vector<std::int32_t> front_order;  // weight of the vertex and of all later vertices in its column of L
};

// order: the vertices in elimination order; position: its inverse.
EliminationTree elimination_tree(const Graph& graph, const std::vector<std::int32_t>& order,
                                 const std::vector<std::int32_t>& position);

}  // namespace modal
