// SPDX-License-Identifier: MIT
// A light set of vertices whose removal leaves two parts of nearly equal weight.
//
// Multilevel: heavy edges are contracted until the graph is small, the small graph is cut between the halves of a
// breadth-first level structure, and the cut is refined on the way back. Hendrickson and Leland, "A multilevel
// algorithm for partitioning graphs", Supercomputing 1995; Karypis and Kumar, SIAM J. Sci. Comput. 20, 1998.
// Deterministic.
#pragma once

#include "factorization/graph.h"
#include "factorization/separator_refinement.h"

namespace modal {

// graph: connected, at least two vertices. A side may come out empty (a complete graph has no separator).
Partition vertex_separator(const Graph& graph);

}  // namespace modal
