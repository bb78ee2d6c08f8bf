// SPDX-License-Identifier: MIT
// Orders a small part of a graph by minimum degree, its surroundings counted in.
//
// Repeatedly the vertex with the least weight of neighbours is eliminated and its neighbours become a clique (Tinney
// and Walker, 1967; Rose, 1972). The neighbours outside the part, which are eliminated later, count in the degrees but
// are not eliminated: without them the rim of the part would look cheap (Pellegrini, Roman and Amestoy, Concurrency 12,
// 2000).
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "factorization/graph.h"

namespace modal {

// part: some vertices of graph; returned in elimination order. local: work, one entry per vertex of graph, all -1 on
// entry and on return.
std::vector<std::int32_t> minimum_degree(const Graph& graph, std::span<const std::int32_t> part,
                                         std::vector<std::int32_t>& local);

}  // namespace modal
