// SPDX-License-Identifier: MIT
// The edge of a mesh.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "structure/structure.h"

namespace modal {

// One side of one element that no other element shares: corner, mid-side node, corner, with the mesh on its left.
using Side = std::array<std::int32_t, 3>;

// The closed loops that bound the mesh, each a chain of sides.
std::vector<std::vector<Side>> mesh_outline(const Mesh& mesh);

}  // namespace modal
