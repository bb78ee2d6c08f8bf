// SPDX-License-Identifier: MIT
// The built-in model: the cantilevered tapered membrane of the NAFEMS benchmark FV32.
#pragma once

#include <string>
#include <vector>

#include "structure/structure.h"

namespace modal {

inline constexpr int largest_mesh_count = 2000;  // elements in one direction

// nx × ny elements, each count 1 .. largest_mesh_count: nx along the axis, ny across it. parts, 1 .. nx: how many
// pieces along the axis are meshed on their own and then joined; the structure is the same.
Structure tapered_membrane(int nx, int ny, int parts = 1);

// One of the pieces alone, from 0, its unknowns numbered. The pieces have as equal shares of the columns as there can be.
Mesh tapered_membrane_part(int nx, int ny, int parts, int part);
std::string tapered_membrane_title(int nx, int ny, int parts);
// Hz, as published.
std::vector<double> tapered_membrane_frequencies();

// Stiffness and mass of a mesh of the same material and thickness, its unknowns numbered.
Structure membrane_structure(std::string title, Mesh numbered);

// A membrane of the same material and thickness from a Gmsh file, in metres.
Structure gmsh_membrane(const std::string& path);

}  // namespace modal
