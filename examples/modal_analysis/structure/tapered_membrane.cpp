// SPDX-License-Identifier: MIT
// A trapezoid on the axis y = 0, 10 m long, 5 m deep at the clamped edge x = 0 and 1 m deep at the tip. Material,
// measures and frequencies: NAFEMS, The Standard NAFEMS Benchmarks, test FV32 (in-plane vibration).
//
// The nodes are numbered column after column from the clamped edge, so that unknowns far apart in number are far
// apart in the structure.
#include "structure/tapered_membrane.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "structure/assembly.h"
#include "structure/gmsh_mesh.h"
#include "structure/mesh_parts.h"
#include "structure/node_graph.h"
#include "structure/quadrilateral8.h"
#include "structure/unknown_numbers.h"

namespace modal {
namespace {

constexpr double length = 10.0;
constexpr double root_depth = 5.0;
constexpr double tip_depth = 1.0;
constexpr Membrane steel{200e9, 0.3, 8000.0, 0.05};
constexpr std::array<double, 6> published_frequency{44.623, 130.03, 162.70, 246.05, 379.90, 391.44};

// The grid of corners and mid-sides has 2·nx + 1 columns: even ones of 2·ny + 1 nodes, odd ones (mid-sides of the
// long edges only) of ny + 1.
class NodeNumbers {
 public:
  explicit NodeNumbers(int ny) : even_(2 * ny + 1), odd_(ny + 1) {}
  // Column c and row r of the grid; in an odd column r must be even.
  std::int32_t operator()(int c, int r) const {
    const int before = (c / 2) * (even_ + odd_);
    return c % 2 == 0 ? before + r : before + even_ + r / 2;
  }

 private:
  int even_;
  int odd_;
};

// The piece between two cross sections.
Mesh membrane_piece(double from, double to, int nx, int ny) {
  Mesh mesh;
  for (int c = 0; c <= 2 * nx; ++c) {
    const double x = from + (to - from) * c / (2 * nx);
    const double depth = root_depth + (tip_depth - root_depth) * x / length;
    for (int r = 0; r <= 2 * ny; r += c % 2 == 0 ? 1 : 2) {
      mesh.node.push_back({x, depth * (r - ny) / (2 * ny)});
    }
  }
  const NodeNumbers number(ny);
  for (int c = 0; c < 2 * nx; c += 2) {
    for (int r = 0; r < 2 * ny; r += 2) {
      mesh.element.push_back({number(c, r), number(c + 2, r), number(c + 2, r + 2), number(c, r + 2),  //
                              number(c + 1, r), number(c + 2, r + 1), number(c + 1, r + 2), number(c, r + 1)});
    }
  }
  return mesh;
}

void number_cantilever(Mesh& mesh) {
  std::vector<bool> clamped;
  for (const auto& node : mesh.node) {
    clamped.push_back(node[0] == 0.0);
  }
  number_unknowns(mesh, clamped);
}

}  // namespace

Structure membrane_structure(std::string title, Mesh numbered) {
  Structure structure;
  structure.title = std::move(title);
  structure.mesh = std::move(numbered);

  const Mesh& mesh = structure.mesh;
  {
    const NodeGraph graph = node_graph(mesh);
    structure.stiffness = equation_pattern(mesh, graph, Coupling::all_directions);
    structure.mass = equation_pattern(mesh, graph, Coupling::equal_directions);
  }
  for (const auto& element : mesh.element) {
    std::array<std::array<double, 2>, 8> corner{};
    std::array<std::int32_t, 16> unknown{};
    for (std::size_t i = 0; i < 8; ++i) {
      const auto node = static_cast<std::size_t>(element[i]);
      corner[i] = mesh.node[node];
      unknown[2 * i] = mesh.equation[node][0];
      unknown[2 * i + 1] = mesh.equation[node][1];
    }
    const ElementMatrices matrices = quadrilateral8(corner, steel);
    add_element(structure.stiffness, unknown, matrices.stiffness);
    add_element(structure.mass, unknown, matrices.mass);
  }
  return structure;
}

std::string tapered_membrane_title(int nx, int ny, int parts) {
  return "NAFEMS FV32, cantilevered tapered membrane, " + std::to_string(nx) + " x " + std::to_string(ny) +
         " eight-node quadrilaterals" + (parts == 1 ? "" : " in " + std::to_string(parts) + " parts");
}

Mesh tapered_membrane_part(int nx, int ny, int parts, int part) {
  const int share = nx / parts;
  const int larger = nx % parts;  // the first so many parts have one column more
  const int first = part * share + std::min(part, larger);
  const int columns = share + (part < larger ? 1 : 0);
  Mesh mesh = membrane_piece(length * first / nx, length * (first + columns) / nx, columns, ny);
  number_cantilever(mesh);
  return mesh;
}

Structure tapered_membrane(int nx, int ny, int parts) {
  Mesh mesh;
  if (parts == 1) {
    mesh = tapered_membrane_part(nx, ny, 1, 0);
  } else {
    std::vector<Mesh> part;
    part.reserve(static_cast<std::size_t>(parts));
    for (int p = 0; p < parts; ++p) {
      part.push_back(tapered_membrane_part(nx, ny, parts, p));
    }
    mesh = joined_parts(part);
    number_cantilever(mesh);
  }
  Structure structure = membrane_structure(tapered_membrane_title(nx, ny, parts), std::move(mesh));
  structure.published_frequency = tapered_membrane_frequencies();
  return structure;
}

std::vector<double> tapered_membrane_frequencies() {
  return {published_frequency.begin(), published_frequency.end()};
}

Structure gmsh_membrane(const std::string& path) {
  Mesh mesh = read_gmsh_mesh(path);
  const std::string title =
      "steel membrane from " + path + ", " + std::to_string(mesh.element.size()) + " eight-node quadrilaterals";
  return membrane_structure(title, std::move(mesh));
}

}  // namespace modal
