// SPDX-License-Identifier: MIT
// Which nodes of a mesh stand for the sensors of a vibration test? For each sensor the nearest node and its distance,
// by the neighbour search.
//
//   g++ nearest_nodes.cpp $(pkg-config --cflags --libs ZORTAVMathKernel)
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "ZORSamOctree.h"

namespace {

using Point = std::array<double, 3>;

class NodeTree : public ZORSamNeighborTree {
 public:
  int32_t GetOctinfo(ZORSamOctinfo& rec) override {
    const Point& node = static_cast<const Point*>(data_)[rec.index];
    rec.x = node[0];
    rec.y = node[1];
    rec.z = node[2];
    return ZORSamStatusOk;
  }
};

// The nodes of a plate of 2 m by 1 m, 25 mm apart.
std::vector<Point> plate_nodes() {
  std::vector<Point> nodes;
  for (int row = 0; row <= 40; ++row) {
    for (int column = 0; column <= 80; ++column) {
      nodes.push_back({0.025 * column, 0.025 * row, 0.0});
    }
  }
  return nodes;
}

}  // namespace

int main() {
  const std::vector<Point> nodes = plate_nodes();
  const auto count = static_cast<uint32_t>(nodes.size());
  NodeTree tree;
  constexpr uint32_t leaf_capacity = 16;
  constexpr uint32_t levels = 20;
  constexpr double smallest_diagonal = 1e-6;
  if (tree.Build(nodes.data(), count, leaf_capacity, nullptr, smallest_diagonal, levels) < 0) {
    return 1;
  }
  for (const Point& sensor : {Point{0.501, 0.252, 0.004}, Point{1.333, 0.75, 0.004}, Point{2.0, 1.0, 0.004}}) {
    uint32_t found = 0;
    uint32_t nearest = 0;
    double square = 0.0;
    const int32_t status =
        tree.GetNeighbors(sensor[0], sensor[1], sensor[2], 1, found, &nearest, &square, 0.0, count, 1);
    // No point of the plate is further than half a cell's diagonal from a node.
    if (status < 0 || found != 1 || std::sqrt(square) > 0.0182) {
      return 1;
    }
    std::printf("sensor (%.3f, %.3f) m: node %u at (%.3f, %.3f) m, %.1f mm away\n", sensor[0], sensor[1], nearest,
                nodes[nearest][0], nodes[nearest][1], 1e3 * std::sqrt(square));
  }
}
