// SPDX-License-Identifier: MIT
// A trapezoid on the axis y = 0, 10 m long, 5 m deep at the clamped edge x = 0 and 1 m deep at the tip. Material,
// measures and frequencies: NAFEMS, The Standard NAFEMS Benchmarks, test FV32 (in-plane vibration).
//
// The nodes are numbered column after column from the clamped edge, so that unknowns far apart in number are far
// apart in the structure.
#include "structure/tapered_membrane.h"

#include <cstddef>

#include "structure/assembly.h"
#include "structure/node_graph.h"
#include "structure/quadrilateral8.h"

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

Mesh membrane_mesh(int nx, int ny) {
  Mesh mesh;
  std::int32_t unknowns = 0;
  for (int c = 0; c <= 2 * nx; ++c) {
    const double x = length * c / (2 * nx);
    const double depth = root_depth + (tip_depth - root_depth) * x / length;
    for (int r = 0; r <= 2 * ny; r += c % 2 == 0 ? 1 : 2) {
      mesh.node.push_back({x, depth * (r - ny) / (2 * ny)});
      if (c == 0) {
        mesh.equation.push_back({-1, -1});
      } else {
        mesh.equation.push_back({unknowns, unknowns + 1});
        unknowns += 2;
      }
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

}  // namespace

Structure tapered_membrane(int nx, int ny) {
  Structure structure;
  structure.title = "NAFEMS FV32, cantilevered tapered membrane, " + std::to_string(nx) + " x " + std::to_string(ny) +
                    " eight-node quadrilaterals";
  structure.mesh = membrane_mesh(nx, ny);
  structure.published_frequency.assign(published_frequency.begin(), published_frequency.end());

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

}  // namespace modal
