// SPDX-License-Identifier: MIT
// The nodes along the edges of parts that were meshed on their own, and which of them coincide.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "structure/input_error.h"
#include "structure/structure.h"

namespace modal {

// Two nodes of different parts are one node when they are at most this share of the local node spacing apart.
inline constexpr double joint_tolerance = 1e-6;
// Nodes of different parts that are farther apart, but less than this share of the spacing, were meant to be joined.
inline constexpr double gap_spacing = 0.5;

struct EdgeNode {
  std::array<double, 2> at;
  double spacing;     // to the nearest node on a side of one of its elements
  std::int32_t node;  // in its part
  std::int32_t part;
};

// A gap between two parts; the text counts nodes and parts from 1.
struct JointGap : InputError {
  JointGap(const EdgeNode& a_, const EdgeNode& b_);
  EdgeNode a;
  EdgeNode b;
};

// Appends the nodes of sides that only one element has, in the order of the nodes.
void append_edge(const Mesh& mesh, std::int32_t part, std::vector<EdgeNode>& edge);

// Per edge node the first one, in the order of the parts, that it coincides with; itself where there is none. At least
// one node, the parts in ascending order. Throws JointGap.
std::vector<std::uint32_t> twins(const std::vector<EdgeNode>& edge);

}  // namespace modal
