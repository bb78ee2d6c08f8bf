// SPDX-License-Identifier: MIT
// A := A + Σ Tₑᵀ·Aₑ·Tₑ, where Tₑ picks the free unknowns of element e.
#include "structure/assembly.h"

#include <algorithm>
#include <cstddef>

namespace modal {
namespace {

// Appends the unknowns of `node` (from 0) that belong before the diagonal of row `unknown`, as columns from 1.
void append_columns(const Mesh& mesh, std::int32_t node, std::int32_t unknown, std::size_t direction, Coupling coupling,
                    Array<std::int32_t>& column) {
  const auto& equation = mesh.equation[static_cast<std::size_t>(node)];
  for (std::size_t d = 0; d < 2; ++d) {
    const bool coupled = coupling == Coupling::all_directions || d == direction;
    if (coupled && equation[d] >= 0 && equation[d] < unknown) {
      column.push_back(equation[d] + 1);
    }
  }
}

}  // namespace

SymmetricMatrix equation_pattern(const Mesh& mesh, const NodeGraph& graph, Coupling coupling) {
  SymmetricMatrix matrix;
  for (std::size_t i = 0; i < mesh.node.size(); ++i) {
    for (std::size_t d = 0; d < 2; ++d) {
      const std::int32_t unknown = mesh.equation[i][d];
      if (unknown < 0) {
        continue;
      }
      const auto first = static_cast<std::size_t>(graph.row_end[i]);
      const auto end = static_cast<std::size_t>(graph.row_end[i + 1]);
      for (std::size_t p = first; p < end && graph.neighbour[p] <= static_cast<std::int32_t>(i); ++p) {
        append_columns(mesh, graph.neighbour[p] - 1, unknown, d, coupling, matrix.column);
      }
      append_columns(mesh, static_cast<std::int32_t>(i), unknown, d, coupling, matrix.column);
      matrix.column.push_back(unknown + 1);
      matrix.row_end.push_back(static_cast<std::int32_t>(matrix.column.size()));
      ++matrix.order;
    }
  }
  matrix.value.assign(matrix.column.size(), 0.0);
  return matrix;
}

void add_element(SymmetricMatrix& matrix, const std::array<std::int32_t, 16>& unknown, const ElementMatrix& element) {
  for (std::size_t i = 0; i < 16; ++i) {
    if (unknown[i] < 0) {
      continue;
    }
    const auto row = static_cast<std::size_t>(unknown[i]);
    const auto first = matrix.column.begin() + matrix.row_end[row];
    const auto end = matrix.column.begin() + matrix.row_end[row + 1];
    for (std::size_t j = 0; j < 16; ++j) {
      if (unknown[j] < 0 || unknown[j] > unknown[i]) {
        continue;
      }
      const auto place = std::lower_bound(first, end, unknown[j] + 1);
      // A zero that the pattern leaves out (the coupling of directions in a mass matrix) has no place.
      if (place != end && *place == unknown[j] + 1) {
        matrix.value[static_cast<std::size_t>(place - matrix.column.begin())] += element[i][j];
      }
    }
  }
}

}  // namespace modal
