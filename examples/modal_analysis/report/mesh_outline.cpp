// SPDX-License-Identifier: MIT
// A mid-side node belongs to exactly one side, so a side is on the edge when one element only has its mid-side node.
#include "report/mesh_outline.h"

#include <cstddef>
#include <map>

namespace modal {

std::vector<std::vector<Side>> mesh_outline(const Mesh& mesh) {
  std::vector<int> uses(mesh.node.size());
  for (const auto& element : mesh.element) {
    for (std::size_t i = 4; i < 8; ++i) {
      ++uses[static_cast<std::size_t>(element[i])];
    }
  }
  std::multimap<std::int32_t, Side> from;  // by first corner
  for (const auto& element : mesh.element) {
    for (std::size_t i = 0; i < 4; ++i) {
      if (uses[static_cast<std::size_t>(element[i + 4])] == 1) {
        from.insert({element[i], {element[i], element[i + 4], element[(i + 1) % 4]}});
      }
    }
  }
  std::vector<std::vector<Side>> loops;
  while (!from.empty()) {
    std::vector<Side> loop;
    for (auto next = from.begin(); next != from.end(); next = from.find(loop.back()[2])) {
      loop.push_back(next->second);
      from.erase(next);
    }
    loops.push_back(loop);
  }
  return loops;
}

}  // namespace modal
