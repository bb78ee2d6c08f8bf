// SPDX-License-Identifier: MIT
#include "joints/joint_candidates.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "factorization/index.h"

namespace component {
namespace {

using modal::at;

constexpr std::size_t message_size = 5;  // numbers a candidate

}  // namespace

std::vector<double> box_of(const modal::Mesh& mesh) {
  constexpr double any = std::numeric_limits<double>::max();
  std::vector<double> box{any, any, -any, -any};
  for (const auto& node : mesh.node) {
    for (std::size_t d = 0; d < 2; ++d) {
      box[d] = std::min(box[d], node[d]);
      box[2 + d] = std::max(box[2 + d], node[d]);
    }
  }
  return box;
}

std::vector<modal::EdgeNode> joint_candidates(const modal::Mesh& mesh, int part, std::span<const double> boxes) {
  std::vector<modal::EdgeNode> nodes;
  modal::append_edge(mesh, part, nodes);
  const auto is_near = [&](const modal::EdgeNode& e, std::size_t other) {
    const double reach = modal::gap_spacing * e.spacing;
    const auto box = boxes.subspan(other * box_size, box_size);
    return e.at[0] >= box[0] - reach && e.at[0] <= box[2] + reach && e.at[1] >= box[1] - reach &&
           e.at[1] <= box[3] + reach;
  };
  const std::size_t parts = boxes.size() / box_size;
  const auto near_none = [&](const modal::EdgeNode& e) {
    for (std::size_t other = 0; other < parts; ++other) {
      if (other != at(part) && is_near(e, other)) {
        return false;
      }
    }
    return true;
  };
  nodes.erase(std::remove_if(nodes.begin(), nodes.end(), near_none), nodes.end());
  return nodes;
}

modal::Array<double> candidate_message(const modal::Mesh& mesh, const std::vector<modal::EdgeNode>& candidates) {
  modal::Array<double> message;
  message.reserve(message_size * candidates.size());
  for (const modal::EdgeNode& e : candidates) {
    const auto name = mesh.tag.empty() ? std::int64_t{e.node} + 1 : mesh.tag[at(e.node)];
    const bool clamped = mesh.equation[at(e.node)][0] < 0;
    for (const double value : {e.at[0], e.at[1], e.spacing, static_cast<double>(name), clamped ? 1.0 : 0.0}) {
      message.push_back(value);
    }
  }
  return message;
}

std::vector<Candidate> candidates_of(std::span<const double> message) {
  std::vector<Candidate> candidates;
  for (std::size_t i = 0; i < message.size(); i += message_size) {
    candidates.push_back({message[i], message[i + 1], message[i + 2], message[i + 3], message[i + 4]});
  }
  return candidates;
}

}  // namespace component
