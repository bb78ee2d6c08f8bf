// SPDX-License-Identifier: MIT
// A part's mesh made ready for its joints.
#pragma once

#include <cstdint>
#include <vector>

#include "joints/joint_map.h"
#include "structure/edge_nodes.h"
#include "structure/structure.h"

namespace component {

// Every side along a joint must be there on both sides of it: where another part has both corners of a side it has the
// node between them too, and the other way round. Throws InputError for a side that is not.
void check_sides(const modal::Mesh& mesh, const std::vector<modal::EdgeNode>& candidates,
                 const std::vector<JointNode>& joint);

// Puts the nodes of the joints behind all others, in the order of the candidates, and numbers the unknowns anew: those
// of the interface are the last. Returns the number of the unknowns before them.
std::int32_t put_interface_last(modal::Mesh& mesh, const std::vector<modal::EdgeNode>& candidates,
                                const std::vector<JointNode>& joint);

}  // namespace component
