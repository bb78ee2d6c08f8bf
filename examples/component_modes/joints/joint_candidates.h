// SPDX-License-Identifier: MIT
// The nodes of a part that may lie on a joint: those of its edges that lie in, or nearly in, another part's box. Only
// they travel.
#pragma once

#include <span>
#include <vector>

#include "structure/edge_nodes.h"
#include "structure/structure.h"

namespace component {

// The box of a part: the lowest x and y, the highest x and y.
inline constexpr std::size_t box_size = 4;
std::vector<double> box_of(const modal::Mesh& mesh);

// boxes: of all parts, one after the other. In the order of the nodes.
std::vector<modal::EdgeNode> joint_candidates(const modal::Mesh& mesh, int part, std::span<const double> boxes);

// What the root has to know of the candidates, and back again.
struct Candidate {
  double x, y, spacing;
  double name;     // number of the node in its file or part, from 1
  double clamped;  // 0 or 1
};
modal::Array<double> candidate_message(const modal::Mesh& mesh, const std::vector<modal::EdgeNode>& candidates);
std::vector<Candidate> candidates_of(std::span<const double> message);

}  // namespace component
