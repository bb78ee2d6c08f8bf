// SPDX-License-Identifier: MIT
// Which candidates of the parts are one node of the structure. The root finds it out for all.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "joints/joint_candidates.h"
#include "services/array_memory.h"

namespace component {

// What a part learns of a candidate.
struct JointNode {
  std::int32_t number = -1;         // among the nodes of all joints, from 0; -1: no other part has the node
  bool clamped = false;             // in one of its parts
  std::vector<std::int32_t> parts;  // that have it too
};

class JointMap {
 public:
  // candidates: those of every part.
  explicit JointMap(const std::vector<std::vector<Candidate>>& candidates);

  // The part whose joint is at fault, -1 where all is well; and what is wrong with it.
  int faulty_part() const { return faulty_part_; }
  const std::string& fault() const { return fault_; }

  // Nodes that at least two parts have and that can move.
  std::int32_t nodes() const { return nodes_; }
  // In the order of the part's candidates.
  const std::vector<JointNode>& of(int part) const { return joint_[static_cast<std::size_t>(part)]; }

 private:
  void number_nodes(const std::vector<std::uint32_t>& first, const std::vector<modal::EdgeNode>& edge,
                    const std::vector<std::vector<Candidate>>& candidates);
  void find_loose_part();

  std::vector<std::vector<JointNode>> joint_;  // per part
  std::int32_t nodes_ = 0;
  int faulty_part_ = -1;
  std::string fault_;
};

modal::Array<double> joint_message(const std::vector<JointNode>& joint);
std::vector<JointNode> joint_of(std::span<const double> message);

// The unknowns of a part's interface, two a node, as numbers among those of all joints, from 0.
std::vector<std::int32_t> interface_unknowns(const std::vector<JointNode>& joint);

}  // namespace component
