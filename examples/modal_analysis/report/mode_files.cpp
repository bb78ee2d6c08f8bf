// SPDX-License-Identifier: MIT
#include "report/mode_files.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "report/number_text.h"

namespace modal {
namespace {

constexpr int vtk_quadratic_quad = 23;
constexpr int vtk_decimals = 6;             // of unit displacements
constexpr int vtk_coordinates = 9;          // significant digits
constexpr std::size_t longest_title = 200;  // VTK allows 256 characters

// File names are part of it, and those may hold anything.
std::string one_line(const std::string& title) {
  std::string text = title.substr(0, longest_title);
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < ' '; }, '?');
  return text;
}

std::string coordinate_text(double value) {
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, vtk_coordinates).ptr;
  return {text, end};
}

}  // namespace

Array<std::array<double, 2>> unit_displacement(const Structure& structure, const ModalResult& result, std::size_t k) {
  const double* mode = result.mode.data() + k * static_cast<std::size_t>(structure.stiffness.order);
  Array<std::array<double, 2>> displacement(structure.mesh.node.size());
  double longest = 0.0;
  for (std::size_t i = 0; i < displacement.size(); ++i) {
    for (std::size_t d = 0; d < 2; ++d) {
      const std::int32_t unknown = structure.mesh.equation[i][d];
      displacement[i][d] = unknown < 0 ? 0.0 : mode[unknown];
    }
    longest = std::max(longest, std::hypot(displacement[i][0], displacement[i][1]));
  }
  for (auto& u : displacement) {
    u[0] /= longest;
    u[1] /= longest;
  }
  return displacement;
}

void write_vtk(std::ostream& out, const Structure& structure, const ModalResult& result) {
  const Mesh& mesh = structure.mesh;
  out << "# vtk DataFile Version 3.0\n" << one_line(structure.title) << "\nASCII\n";
  out << "DATASET UNSTRUCTURED_GRID\nPOINTS " << mesh.node.size() << " double\n";
  for (const auto& node : mesh.node) {
    out << coordinate_text(node[0]) << ' ' << coordinate_text(node[1]) << " 0\n";
  }
  out << "CELLS " << mesh.element.size() << ' ' << 9 * mesh.element.size() << '\n';
  for (const auto& element : mesh.element) {
    out << 8;
    for (const std::int32_t node : element) {
      out << ' ' << node;
    }
    out << '\n';
  }
  out << "CELL_TYPES " << mesh.element.size() << '\n';
  for (std::size_t e = 0; e < mesh.element.size(); ++e) {
    out << vtk_quadratic_quad << '\n';
  }
  out << "POINT_DATA " << mesh.node.size() << '\n';
  for (std::size_t k = 0; k < result.eigenvalue.size(); ++k) {
    out << "VECTORS mode_" << k + 1 << '_' << frequency_text(frequency(result.eigenvalue[k])) << "_Hz double\n";
    for (const auto& u : unit_displacement(structure, result, k)) {
      out << fixed_text(u[0], vtk_decimals) << ' ' << fixed_text(u[1], vtk_decimals) << " 0\n";
    }
  }
}

void write_mode_matrix(std::ostream& out, const Structure& structure, const ModalResult& result) {
  out << "%%MatrixMarket matrix array real general\n% M-normalised modes, " << one_line(structure.title)
      << "\n% eigenvalues:";
  for (const double eigenvalue : result.eigenvalue) {
    out << "\n%   " << short_text(eigenvalue);
  }
  out << '\n' << structure.stiffness.order << ' ' << result.eigenvalue.size() << '\n';
  for (const double value : result.mode) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text - 1, value).ptr;
    *end = '\n';
    out.write(text, end + 1 - text);
  }
}

}  // namespace modal
