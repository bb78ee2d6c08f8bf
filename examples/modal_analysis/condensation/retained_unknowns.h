// SPDX-License-Identifier: MIT
// The file that names the unknowns to retain, one a line: of a mesh "NODE x" or "NODE y", of matrices the number of the
// unknown. Nodes have the numbers of their Gmsh file; those of the built-in model and unknowns are counted from 1.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "structure/structure.h"

namespace modal {

inline constexpr int most_retained = 20000;

struct RetainedUnknowns {
  std::vector<std::int32_t> unknown;  // from 0, in the order of the file
  std::vector<std::string> name;      // "17 x" of a mesh, "17" of matrices
};

// Throws InputError that names the line.
RetainedUnknowns read_retained_unknowns(const std::string& path, const Structure& structure);

}  // namespace modal
