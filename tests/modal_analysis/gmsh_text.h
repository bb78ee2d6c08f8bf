// SPDX-License-Identifier: MIT
// A mesh as Gmsh writes it.
#pragma once

#include <sstream>
#include <string>

#include "structure/structure.h"

namespace modaltest {

// The edge x = 0 is curve 4 of the group "clamped" and is meshed with lines of three nodes.
inline std::string gmsh_text(const modal::Mesh& mesh) {
  std::ostringstream text;
  text.precision(17);
  text << "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n";
  text << "$PhysicalNames\n2\n1 7 \"clamped\"\n2 8 \"steel plate\"\n$EndPhysicalNames\n";
  text << "$Entities\n1 1 1 0\n1 0 0 0 0\n4 0 -3 0 0 3 0 1 7 2 1 -2\n1 0 -3 0 10 3 0 1 8 1 4\n$EndEntities\n";
  text << "$Nodes\n1 " << mesh.node.size() << " 10 100\n2 1 0 " << mesh.node.size() << '\n';
  for (std::size_t i = 0; i < mesh.node.size(); ++i) {
    text << 10 * (i + 1) << '\n';
  }
  for (const auto& node : mesh.node) {
    text << node[0] << ' ' << node[1] << " 0\n";
  }
  std::ostringstream lines;
  std::size_t line_count = 0;
  for (const auto& element : mesh.element) {
    const auto tag = [&element](std::size_t i) { return 10 * (element[i] + 1); };
    if (mesh.node[static_cast<std::size_t>(element[0])][0] == 0) {
      lines << ++line_count << ' ' << tag(0) << ' ' << tag(3) << ' ' << tag(7) << '\n';
    }
  }
  text << "$EndNodes\n$Elements\n2 " << line_count + mesh.element.size() << " 1 99\n1 4 8 " << line_count << '\n';
  text << lines.str() << "2 1 16 " << mesh.element.size() << '\n';
  for (std::size_t e = 0; e < mesh.element.size(); ++e) {
    text << line_count + e + 1;
    for (const std::int32_t node : mesh.element[e]) {
      text << ' ' << 10 * (node + 1);
    }
    text << '\n';
  }
  text << "$EndElements\n";
  return text.str();
}

}  // namespace modaltest
