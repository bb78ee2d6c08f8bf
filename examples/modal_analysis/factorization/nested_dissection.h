// SPDX-License-Identifier: MIT
// An elimination order of low fill: separators last, the parts between them likewise, small parts by minimum degree.
//
// George, "Nested dissection of a regular finite element mesh", SIAM J. Numer. Anal. 10, 1973. Deterministic.
#pragma once

#include <cstdint>
#include <vector>

#include "factorization/graph.h"

namespace modal {

// The vertices of the graph in elimination order. The graph need not be connected.
std::vector<std::int32_t> nested_dissection(const Graph& graph);

}  // namespace modal
