// SPDX-License-Identifier: MIT
#include "joints/joined_mesh.h"

#include <algorithm>
#include <string>

#include "factorization/index.h"
#include "structure/input_error.h"
#include "structure/unknown_numbers.h"

namespace component {
namespace {

using modal::at;

std::string name(const modal::Mesh& mesh, std::int32_t node) {
  return std::to_string(mesh.tag.empty() ? std::int64_t{node} + 1 : mesh.tag[at(node)]);
}

bool has(const std::vector<std::int32_t>& parts, std::int32_t part) {
  return std::find(parts.begin(), parts.end(), part) != parts.end();
}

}  // namespace

void check_sides(const modal::Mesh& mesh, const std::vector<modal::EdgeNode>& candidates,
                 const std::vector<JointNode>& joint) {
  static const std::vector<std::int32_t> none;
  std::vector<const std::vector<std::int32_t>*> parts(mesh.node.size(), &none);
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    parts[at(candidates[i].node)] = &joint[i].parts;
  }
  std::vector<int> uses(mesh.node.size(), 0);  // of the nodes between corners
  for (const auto& element : mesh.element) {
    for (std::size_t i = 4; i < 8; ++i) {
      ++uses[at(element[i])];
    }
  }
  for (const auto& element : mesh.element) {
    for (std::size_t i = 0; i < 4; ++i) {
      if (uses[at(element[4 + i])] != 1) {
        continue;  // a side between two elements of the part
      }
      const std::int32_t from = element[i];
      const std::int32_t to = element[(i + 1) % 4];
      const auto& middle = *parts[at(element[4 + i])];
      const auto refuse = [&](std::int32_t other) {
        throw modal::InputError("the side from node " + name(mesh, from) + " to node " + name(mesh, to) +
                                " has no counterpart in part " + std::to_string(other + 1) +
                                ": the parts do not match along their joint");
      };
      for (const std::int32_t other : *parts[at(from)]) {
        if (has(*parts[at(to)], other) && !has(middle, other)) {
          refuse(other);
        }
      }
      for (const std::int32_t other : middle) {
        if (!has(*parts[at(from)], other) || !has(*parts[at(to)], other)) {
          refuse(other);
        }
      }
    }
  }
}

std::int32_t put_interface_last(modal::Mesh& mesh, const std::vector<modal::EdgeNode>& candidates,
                                const std::vector<JointNode>& joint) {
  std::vector<bool> fixed;
  for (const auto& equation : mesh.equation) {
    fixed.push_back(equation[0] < 0);
  }
  std::vector<bool> on_interface(mesh.node.size(), false);
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const std::size_t node = at(candidates[i].node);
    on_interface[node] = joint[i].number >= 0;
    fixed[node] = fixed[node] || joint[i].clamped;
  }

  modal::Mesh sorted;
  std::vector<std::int32_t> number(mesh.node.size());
  std::vector<bool> sorted_fixed;
  std::size_t interface_begin = 0;
  for (const bool interface : {false, true}) {
    interface_begin = interface ? sorted.node.size() : 0;
    for (std::size_t i = 0; i < mesh.node.size(); ++i) {
      if (on_interface[i] == interface) {
        number[i] = static_cast<std::int32_t>(sorted.node.size());
        sorted.node.push_back(mesh.node[i]);
        sorted_fixed.push_back(fixed[i]);
        if (!mesh.tag.empty()) {
          sorted.tag.push_back(mesh.tag[i]);
        }
      }
    }
  }
  sorted.element = std::move(mesh.element);
  for (auto& element : sorted.element) {
    for (std::int32_t& node : element) {
      node = number[at(node)];
    }
  }
  modal::number_unknowns(sorted, sorted_fixed);
  mesh = std::move(sorted);

  const auto free_before =
      std::count(sorted_fixed.begin(), sorted_fixed.begin() + static_cast<std::ptrdiff_t>(interface_begin), false);
  return static_cast<std::int32_t>(2 * free_before);
}

}  // namespace component
