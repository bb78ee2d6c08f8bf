// SPDX-License-Identifier: MIT
#include "structure/mesh_parts.h"

#include <cstddef>
#include <cstdint>

#include "structure/edge_nodes.h"

namespace modal {

Mesh joined_parts(const std::vector<Mesh>& parts) {
  std::vector<EdgeNode> edge;
  for (std::size_t p = 0; p < parts.size(); ++p) {
    append_edge(parts[p], static_cast<std::int32_t>(p), edge);
  }
  const std::vector<std::uint32_t> twin = twins(edge);

  Mesh mesh;
  std::vector<std::int32_t> number_of_edge(edge.size());
  std::size_t e = 0;  // edge nodes stand in the order of parts and nodes
  for (std::size_t p = 0; p < parts.size(); ++p) {
    std::vector<std::int32_t> number(parts[p].node.size());
    for (std::size_t i = 0; i < number.size(); ++i) {
      number[i] = static_cast<std::int32_t>(mesh.node.size());
      const bool on_edge = e < edge.size() && edge[e].part == static_cast<std::int32_t>(p) &&
                           edge[e].node == static_cast<std::int32_t>(i);
      if (on_edge && twin[e] < e) {
        number[i] = number_of_edge[twin[e]];
      } else {
        mesh.node.push_back(parts[p].node[i]);
      }
      if (on_edge) {
        number_of_edge[e++] = number[i];
      }
    }
    for (auto element : parts[p].element) {
      for (std::int32_t& node : element) {
        node = number[static_cast<std::size_t>(node)];
      }
      mesh.element.push_back(element);
    }
  }
  return mesh;
}

}  // namespace modal
