// SPDX-License-Identifier: MIT
// Which nodes of a mesh share an element.
#pragma once

#include <cstdint>

#include "services/array_memory.h"
#include "structure/structure.h"

namespace modal {

// The neighbours of node i (from 1), ascending and without i itself, are neighbour(row_end(i)+1 .. row_end(i+1)),
// positions from 1 and row_end(1) = 0.
struct NodeGraph {
  Array<std::int32_t> row_end;
  Array<std::int32_t> neighbour;
};

NodeGraph node_graph(const Mesh& mesh);

}  // namespace modal
