// SPDX-License-Identifier: MIT
// Element matrices of the eight-node (serendipity) quadrilateral in plane stress.
#pragma once

#include <array>

namespace modal {

struct Membrane {
  double youngs_modulus;  // Pa
  double poisson_ratio;
  double density;    // kg/m³
  double thickness;  // m
};

// Displacement direction d (0 x, 1 y) of node i is row and column 2·i + d.
using ElementMatrix = std::array<std::array<double, 16>, 16>;

struct ElementMatrices {
  ElementMatrix stiffness{};
  ElementMatrix mass{};
};

// node: four corners counter-clockwise, then the mid-side node after each corner; metres.
ElementMatrices quadrilateral8(const std::array<std::array<double, 2>, 8>& node, const Membrane& membrane);

}  // namespace modal
