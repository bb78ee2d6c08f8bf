// SPDX-License-Identifier: MIT
// Plane meshes from Gmsh.
#pragma once

#include <string>

#include "structure/structure.h"

namespace modal {

// Reads a mesh of eight-node quadrilaterals in the plane z = 0 from an MSH 4.1 text file. Nodes on points and curves of
// the physical groups named "clamped" do not move; nodes that no quadrilateral has are left out; elements that run
// clockwise are turned round. Throws InputError, with the line, for a file that cannot be used.
Mesh read_gmsh_mesh(const std::string& path);

}  // namespace modal
