// SPDX-License-Identifier: MIT
// Twins are searched among the edge nodes only, by a nearest-neighbour search over all parts at once.
//
// The search's box test counts the distance of one axis up to three times: it may miss a node, but none at a distance
// below d/√3, where d is the distance of the farthest neighbour that it found. Eight neighbours reach beyond the node
// spacing h, and gap_spacing·h < h/√3: no twin and no gap goes unseen.
#include "structure/edge_nodes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <new>
#include <string>

#include "ZORSamOctree.h"

namespace modal {
namespace {

constexpr std::uint32_t neighbours = 8;
constexpr std::uint32_t leaf_capacity = 16;
constexpr std::uint32_t most_levels = 30;

class EdgeTree : public ZORSamNeighborTree {
 public:
  explicit EdgeTree(const std::vector<EdgeNode>& edge) {
    double smallest = std::numeric_limits<double>::max();
    for (const EdgeNode& e : edge) {
      smallest = std::min(smallest, e.spacing);
    }
    check(Build(edge.data(), static_cast<std::uint32_t>(edge.size()), leaf_capacity, nullptr,
                std::max(smallest, std::numeric_limits<double>::min()), most_levels));
  }
  std::int32_t GetOctinfo(ZORSamOctinfo& rec) override {
    const auto& at = static_cast<const EdgeNode*>(data_)[rec.index].at;
    rec.x = at[0];
    rec.y = at[1];
    rec.z = 0;
    return ZORSamStatusOk;
  }
  struct Found {
    std::uint32_t count = 0;
    std::array<std::uint32_t, neighbours> index{};
    std::array<double, neighbours> square{};
  };
  Found nearest(const EdgeNode& e) {
    Found found;
    check(GetNeighbors(e.at[0], e.at[1], 0, neighbours, found.count, found.index.data(), found.square.data(), 0.0,
                       GetNbValidEntities(), 1));
    return found;
  }

 private:
  static void check(std::int32_t status) {
    if (status < 0) {  // this accessor never fails
      throw std::bad_alloc();
    }
  }
};

double distance(const std::array<double, 2>& a, const std::array<double, 2>& b) {
  return std::hypot(a[0] - b[0], a[1] - b[1]);
}

std::string gap_text(const EdgeNode& a, const EdgeNode& b) {
  const auto name = [](const EdgeNode& e) {
    return "node " + std::to_string(e.node + 1) + " of part " + std::to_string(e.part + 1);
  };
  char apart[32];
  std::snprintf(apart, sizeof apart, "%.6g", distance(a.at, b.at));
  return "a joint does not close: " + name(a) + " and " + name(b) + " are " + apart + " m apart";
}

}  // namespace

JointGap::JointGap(const EdgeNode& a_, const EdgeNode& b_) : InputError(gap_text(a_, b_)), a(a_), b(b_) {}

void append_edge(const Mesh& mesh, std::int32_t part, std::vector<EdgeNode>& edge) {
  std::vector<int> uses(mesh.node.size());
  std::vector<double> spacing(mesh.node.size(), std::numeric_limits<double>::max());
  for (const auto& element : mesh.element) {
    for (std::size_t i = 0; i < 8; ++i) {
      const auto corner = static_cast<std::size_t>(element[i % 4]);
      const auto middle = static_cast<std::size_t>(element[4 + (i + i / 4 * 3) % 4]);  // after it, then before it
      uses[middle] += i < 4 ? 1 : 0;
      const double length = distance(mesh.node[corner], mesh.node[middle]);
      spacing[corner] = std::min(spacing[corner], length);
      spacing[middle] = std::min(spacing[middle], length);
    }
  }
  std::vector<bool> on_edge(mesh.node.size());
  for (const auto& element : mesh.element) {
    for (std::size_t i = 0; i < 4; ++i) {
      if (uses[static_cast<std::size_t>(element[i + 4])] == 1) {
        for (const std::int32_t node : {element[i], element[i + 4], element[(i + 1) % 4]}) {
          on_edge[static_cast<std::size_t>(node)] = true;
        }
      }
    }
  }
  for (std::size_t i = 0; i < mesh.node.size(); ++i) {
    if (on_edge[i]) {
      edge.push_back({mesh.node[i], spacing[i], static_cast<std::int32_t>(i), part});
    }
  }
}

std::vector<std::uint32_t> twins(const std::vector<EdgeNode>& edge) {
  EdgeTree tree(edge);
  std::vector<std::uint32_t> twin(edge.size());
  for (std::uint32_t i = 0; i < edge.size(); ++i) {
    twin[i] = i;
    const EdgeTree::Found found = tree.nearest(edge[i]);
    std::vector<std::int32_t> joined;  // parts
    for (std::uint32_t k = 0; k < found.count; ++k) {
      const EdgeNode& other = edge[found.index[k]];
      const double spacing = std::min(edge[i].spacing, other.spacing);
      const double apart = std::sqrt(found.square[k]);
      if (other.part == edge[i].part || apart >= gap_spacing * spacing) {
        continue;
      }
      if (apart <= joint_tolerance * spacing) {
        twin[i] = std::min(twin[i], twin[std::min(i, found.index[k])]);
        joined.push_back(other.part);
      } else if (std::find(joined.begin(), joined.end(), other.part) == joined.end()) {
        throw JointGap(edge[i], other);
      }
    }
  }
  return twin;
}

}  // namespace modal
