// SPDX-License-Identifier: MIT
// One mesh from parts that were meshed on their own and have coincident nodes along their joints.
#pragma once

#include <vector>

#include "structure/structure.h"

namespace modal {

// The nodes in the order of the parts, each joint's nodes where its first part has them; the unknowns are not numbered.
// Throws JointGap, an InputError, for a gap: its text names the two nodes, both counted from 1 within their parts, and their
// distance.
Mesh joined_parts(const std::vector<Mesh>& parts);

}  // namespace modal
