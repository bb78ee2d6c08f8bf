// SPDX-License-Identifier: MIT
#include "joints/joint_map.h"

#include <limits>
#include <numeric>

#include "factorization/index.h"

namespace component {
namespace {

using modal::at;

// The node as messages name it: its number in the file where that fits.
std::int32_t name_of(const Candidate& candidate, std::size_t place) {
  constexpr auto largest = static_cast<double>(std::numeric_limits<std::int32_t>::max());
  return static_cast<std::int32_t>(candidate.name <= largest ? candidate.name - 1 : static_cast<double>(place));
}

}  // namespace

JointMap::JointMap(const std::vector<std::vector<Candidate>>& candidates) {
  std::vector<modal::EdgeNode> edge;
  for (std::size_t p = 0; p < candidates.size(); ++p) {
    for (std::size_t i = 0; i < candidates[p].size(); ++i) {
      const Candidate& c = candidates[p][i];
      edge.push_back({{c.x, c.y}, c.spacing, name_of(c, i), static_cast<std::int32_t>(p)});
    }
    joint_.emplace_back(candidates[p].size());
  }
  if (!edge.empty()) {
    try {
      number_nodes(modal::twins(edge), edge, candidates);
    } catch (const modal::JointGap& gap) {
      faulty_part_ = gap.a.part;
      fault_ = gap.what();
      return;
    }
  }
  find_loose_part();
}

void JointMap::number_nodes(const std::vector<std::uint32_t>& first, const std::vector<modal::EdgeNode>& edge,
                            const std::vector<std::vector<Candidate>>& candidates) {
  std::vector<std::vector<std::int32_t>> parts(edge.size());  // of the first of each group of twins
  std::vector<bool> clamped(edge.size(), false);
  std::size_t e = 0;
  for (const auto& of_part : candidates) {
    for (const Candidate& candidate : of_part) {
      parts[first[e]].push_back(edge[e].part);
      clamped[first[e]] = clamped[first[e]] || candidate.clamped != 0.0;
      ++e;
    }
  }
  std::vector<std::int32_t> number(edge.size(), -1);
  e = 0;
  for (auto& joint : joint_) {
    for (JointNode& node : joint) {
      const std::size_t f = first[e];
      node.clamped = clamped[f];
      for (const std::int32_t part : parts[f]) {
        if (part != edge[e].part) {
          node.parts.push_back(part);
        }
      }
      if (parts[f].size() > 1 && !clamped[f]) {
        if (number[f] < 0) {
          number[f] = nodes_++;
        }
        node.number = number[f];
      }
      ++e;
    }
  }
}

// Every part must hang together with the first, or nothing carries it.
void JointMap::find_loose_part() {
  std::vector<std::size_t> leader(joint_.size());
  std::iota(leader.begin(), leader.end(), std::size_t{0});
  const auto leader_of = [&leader](std::size_t p) {
    while (leader[p] != p) {
      p = leader[p] = leader[leader[p]];
    }
    return p;
  };
  for (std::size_t p = 0; p < joint_.size(); ++p) {
    for (const JointNode& node : joint_[p]) {
      for (const std::int32_t other : node.parts) {
        leader[leader_of(at(other))] = leader_of(p);
      }
    }
  }
  for (std::size_t p = 1; p < joint_.size(); ++p) {
    if (leader_of(p) != leader_of(0)) {
      faulty_part_ = static_cast<int>(p);
      fault_ = "the part is not joined to part 1, neither directly nor through others";
      return;
    }
  }
}

modal::Array<double> joint_message(const std::vector<JointNode>& joint) {
  modal::Array<double> message;
  for (const JointNode& node : joint) {
    message.push_back(node.number);
    message.push_back(node.clamped ? 1.0 : 0.0);
    message.push_back(static_cast<double>(node.parts.size()));
    message.insert(message.end(), node.parts.begin(), node.parts.end());
  }
  return message;
}

std::vector<JointNode> joint_of(std::span<const double> message) {
  std::vector<JointNode> joint;
  for (std::size_t i = 0; i < message.size();) {
    JointNode node;
    node.number = static_cast<std::int32_t>(message[i]);
    node.clamped = message[i + 1] != 0.0;
    const auto parts = static_cast<std::size_t>(message[i + 2]);
    i += 3;
    for (const std::size_t end = i + parts; i < end; ++i) {
      node.parts.push_back(static_cast<std::int32_t>(message[i]));
    }
    joint.push_back(std::move(node));
  }
  return joint;
}

std::vector<std::int32_t> interface_unknowns(const std::vector<JointNode>& joint) {
  std::vector<std::int32_t> unknowns;
  for (const JointNode& node : joint) {
    if (node.number >= 0) {
      unknowns.push_back(2 * node.number);
      unknowns.push_back(2 * node.number + 1);
    }
  }
  return unknowns;
}

}  // namespace component
