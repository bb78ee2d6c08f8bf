// SPDX-License-Identifier: MIT
#include "factorization/elimination_tree.h"

#include "factorization/index.h"

namespace modal {

EliminationTree elimination_tree(const Graph& graph, const std::vector<std::int32_t>& order,
                                 const std::vector<std::int32_t>& position) {
  const std::int32_t n = graph.vertices();
  EliminationTree tree{std::vector<std::int32_t>(at(n), -1), std::vector<std::int32_t>(at(n))};
  std::vector<std::int32_t> ancestor(at(n), -1);
  for (std::int32_t k = 0; k < n; ++k) {
    for (const std::int32_t u : graph.neighbours(order[at(k)])) {
      for (std::int32_t j = position[at(u)]; j >= 0 && j < k;) {
        const std::int32_t above = ancestor[at(j)];
        ancestor[at(j)] = k;
        if (above < 0) {
          tree.parent[at(j)] = k;
        }
        j = above;
      }
    }
  }

  std::vector<std::int32_t> row_seen(at(n), -1);  // the last row whose subtree reached the column
  for (std::int32_t k = 0; k < n; ++k) {
    const std::int32_t weight = graph.vertex_weight[at(order[at(k)])];
    tree.front_order[at(k)] = weight;
    row_seen[at(k)] = k;
    for (const std::int32_t u : graph.neighbours(order[at(k)])) {
      for (std::int32_t j = position[at(u)]; j < k && row_seen[at(j)] != k; j = tree.parent[at(j)]) {
        row_seen[at(j)] = k;
        tree.front_order[at(j)] += weight;
      }
    }
  }
  return tree;
}

}  // namespace modal
