// SPDX-License-Identifier: MIT
// Plane meshes from Gmsh.
#pragma once

#include <string>

#include "structure/structure.h"

namespace modal {

// Whether a file without a clamped node can be used: a part of a structure may be held by the others.
enum class Support { required, optional };

// Reads a mesh of eight-node quadrilaterals in the plane z = 0 from an MSH 4.1 text file. Nodes on points and curves of
// the physical groups named "clamped" do not move; nodes that no quadrilateral has are left out; elements that run
// clockwise are turned round. Throws InputError, with the line, for a file that cannot be used.
Mesh read_gmsh_mesh(const std::string& path, Support support = Support::required);

}  // namespace modal
