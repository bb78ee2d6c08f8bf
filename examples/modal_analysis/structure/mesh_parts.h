// SPDX-License-Identifier: MIT
// One mesh from parts that were meshed on their own and have coincident nodes along their joints.
#pragma once

#include <vector>

#include "structure/structure.h"

namespace modal {

// Two nodes of different parts are one node when they are at most this share of the local node spacing apart.
inline constexpr double joint_tolerance = 1e-6;
// Nodes of different parts that are farther apart, but less than this share of the spacing, were meant to be joined.
inline constexpr double gap_spacing = 0.5;

// The nodes in the order of the parts, each joint's nodes where its first part has them; the unknowns are not numbered.
// Throws InputError for a gap: its text names the two nodes, both counted from 1 within their parts, and their
// distance.
Mesh joined_parts(const std::vector<Mesh>& parts);

}  // namespace modal
