// SPDX-License-Identifier: MIT
// A graph of about half as many vertices: the ends of a matching of heavy edges become one vertex each.
#pragma once

#include <cstdint>
#include <vector>

#include "factorization/graph.h"

namespace modal {

struct CoarserGraph {
  Graph graph;                          // weights of vertices and edges are sums over what was contracted
  std::vector<std::int32_t> vertex_of;  // per vertex of the finer graph
};

CoarserGraph contract_heavy_edges(const Graph& fine);

}  // namespace modal
