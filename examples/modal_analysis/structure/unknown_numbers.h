// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "structure/structure.h"

namespace modal {

// Numbers the displacements of the nodes that are not fixed, in the order of the nodes, x before y.
void number_unknowns(Mesh& mesh, const std::vector<bool>& fixed);

}  // namespace modal
