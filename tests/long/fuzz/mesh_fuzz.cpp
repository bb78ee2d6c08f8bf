// SPDX-License-Identifier: MIT
// Meshes: refused with one line of text, or a structure whose numbers lead to nodes and unknowns that are there.
#include "hostile_input.h"
#include "structure/gmsh_mesh.h"
#include "structure/input_error.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  modal::Mesh mesh;
  try {
    mesh = modal::read_gmsh_mesh(zortest::as_file(data, size));
  } catch (const modal::InputError& refusal) {
    zortest::promise(std::string(refusal.what()).find('\n') == std::string::npos, "the message is one line");
    return 0;
  }
  const auto nodes = static_cast<std::int32_t>(mesh.node.size());
  zortest::promise(!mesh.element.empty() && mesh.tag.size() == mesh.node.size(), "elements and tags");
  for (const auto& element : mesh.element) {
    for (const std::int32_t node : element) {
      zortest::promise(node >= 0 && node < nodes, "elements of nodes that are there");
    }
  }
  std::int32_t next = 0;
  bool clamped = false;
  for (const auto& equations : mesh.equation) {
    for (const std::int32_t equation : equations) {
      zortest::promise(equation >= -1 && equation < 2 * nodes, "unknowns in range");
      clamped = clamped || equation == -1;
      next += equation >= 0 ? 1 : 0;
    }
  }
  zortest::promise(clamped && next > 0, "some nodes move, some do not");
  return 0;
}
