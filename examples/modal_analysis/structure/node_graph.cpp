// SPDX-License-Identifier: MIT
// The pattern of Aᵀ·A without its diagonal, where row e of A holds the nodes of element e.
#include "structure/node_graph.h"

#include <cstddef>

#include "ZORTAVSparsePatterns.h"

namespace modal {

NodeGraph node_graph(const Mesh& mesh) {
  const auto nodes = static_cast<std::int32_t>(mesh.node.size());
  const auto elements = static_cast<std::int32_t>(mesh.element.size());
  const auto node_count = mesh.node.size();

  Array<std::int32_t> element_end{0};
  Array<std::int32_t> element_node;
  element_end.reserve(mesh.element.size() + 1);
  element_node.reserve(8 * mesh.element.size());
  for (const auto& element : mesh.element) {
    for (const std::int32_t node : element) {
      element_node.push_back(node + 1);
    }
    element_end.push_back(static_cast<std::int32_t>(element_node.size()));
  }

  const std::int32_t reserved = 0;
  Array<std::int32_t> node_end(node_count + 1);
  Array<std::int32_t> node_element(element_node.size());
  Array<std::int32_t> work(node_count + 1);
  NodeGraph graph;
  graph.row_end.resize(node_count + 1);
  std::int32_t total = 0;
  eaupnn(&nodes, &elements, &reserved, element_end.data(), element_node.data(), node_end.data(), node_element.data(),
         work.data(), graph.row_end.data(), &total);
  graph.neighbour.resize(static_cast<std::size_t>(total));
  eaunln(&nodes, &reserved, &reserved, element_end.data(), element_node.data(), node_end.data(), node_element.data(),
         work.data(), graph.neighbour.data());
  return graph;
}

}  // namespace modal
