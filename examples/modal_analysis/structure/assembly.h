// SPDX-License-Identifier: MIT
// From a mesh to its sparse matrices: the pattern first, then the element matrices added into it.
#pragma once

#include <array>
#include <cstdint>

#include "structure/node_graph.h"
#include "structure/quadrilateral8.h"
#include "structure/structure.h"
#include "structure/symmetric_matrix.h"

namespace modal {

// Whether the two displacement directions of a pair of nodes are coupled. A mass matrix couples equal directions only.
enum class Coupling { all_directions, equal_directions };

// A matrix of zeros with a place for every pair of unknowns whose nodes share an element. Unknowns must be numbered in
// the order of the nodes, the x displacement of a node before its y displacement.
SymmetricMatrix equation_pattern(const Mesh& mesh, const NodeGraph& graph, Coupling coupling);

// Adds the rows and columns of the element's free unknowns (from 0; -1 is fixed) into the matrix.
void add_element(SymmetricMatrix& matrix, const std::array<std::int32_t, 16>& unknown, const ElementMatrix& element);

}  // namespace modal
