// SPDX-License-Identifier: MIT
#include "structure/unknown_numbers.h"

#include <cstddef>
#include <cstdint>

namespace modal {

void number_unknowns(Mesh& mesh, const std::vector<bool>& fixed) {
  std::int32_t unknowns = 0;
  mesh.equation.clear();
  mesh.equation.reserve(mesh.node.size());
  for (std::size_t i = 0; i < mesh.node.size(); ++i) {
    if (fixed[i]) {
      mesh.equation.push_back({-1, -1});
    } else {
      mesh.equation.push_back({unknowns, unknowns + 1});
      unknowns += 2;
    }
  }
}

}  // namespace modal
