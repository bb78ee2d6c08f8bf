// SPDX-License-Identifier: MIT
// The built-in model: the cantilevered tapered membrane of the NAFEMS benchmark FV32.
#pragma once

#include "structure/structure.h"

namespace modal {

inline constexpr int largest_mesh_count = 2000;  // elements in one direction

// nx × ny elements, each count 1 .. largest_mesh_count: nx along the axis, ny across it.
Structure tapered_membrane(int nx, int ny);

}  // namespace modal
