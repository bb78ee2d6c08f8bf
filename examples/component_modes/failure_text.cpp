// SPDX-License-Identifier: MIT
#include "failure_text.h"

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <new>

#include "modes/modal_solver.h"
#include "report/number_text.h"
#include "services/array_memory.h"

namespace component {
namespace {

// The displacement that an equation, from 1, is of.
std::string unknown_name(const modal::Mesh& mesh, std::int32_t equation) {
  for (std::size_t i = 0; i < mesh.equation.size(); ++i) {
    for (std::size_t d = 0; d < 2; ++d) {
      if (mesh.equation[i][d] == equation - 1) {
        const std::string where =
            "x = " + modal::short_text(mesh.node[i][0]) + ", y = " + modal::short_text(mesh.node[i][1]);
        return std::string(d == 0 ? "x" : "y") + " displacement of the node at " + where;
      }
    }
  }
  return "equation " + std::to_string(equation);
}

std::string refusal_text(const modal::PivotRefused& refused, const modal::Mesh* mesh) {
  constexpr int ratio_too_small = 34;
  const std::string pivot = "pivot status " + std::to_string(refused.status) + ", pivot " +
                            modal::short_text(refused.value) +
                            (refused.status == ratio_too_small ? " times its initial diagonal" : "");
  if (mesh != nullptr) {
    return "the part is singular, it can move though its interface is held: " + unknown_name(*mesh, refused.equation) +
           ", " + pivot;
  }
  return refused.shift == 0.0 ? "the joined parts are singular, nothing holds the structure: " + pivot
                              : "the joined parts cannot be factored to check that no mode was missed: " + pivot;
}

}  // namespace

std::string failure_text(const std::exception& error, const modal::Mesh* mesh) {
  if (const auto* refused = dynamic_cast<const modal::PivotRefused*>(&error)) {
    return refusal_text(*refused, mesh);
  }
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) {
    const auto* array = dynamic_cast<const modal::ArrayRefused*>(&error);
    return std::string("not enough memory") + (array != nullptr ? std::string(": ") + array->what() : "");
  }
  return error.what();
}

void print_failure(const std::string& text) {
  std::string line = "component_modes: " + text;
  std::replace_if(
      line.begin(), line.end(), [](unsigned char c) { return c < ' '; }, '?');
  std::cerr << line + '\n' << std::flush;
}

void print_failure(int rank, const std::string& text) {
  print_failure("rank " + std::to_string(rank) + ": " + text);
}

}  // namespace component
