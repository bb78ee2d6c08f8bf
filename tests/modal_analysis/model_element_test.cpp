// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "structure/quadrilateral8.h"

namespace {

using modal::ElementMatrix;
using Nodes = std::array<std::array<double, 2>, 8>;
using Field = std::array<double, 16>;

constexpr modal::Membrane material{70e9, 0.33, 2700.0, 0.02};

// A general quadrilateral with straight sides.
Nodes skewed() {
  Nodes node{{{0.0, 0.0}, {3.0, -0.5}, {2.5, 2.0}, {0.4, 1.2}}};
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t d = 0; d < 2; ++d) {
      node[i + 4][d] = (node[i][d] + node[(i + 1) % 4][d]) / 2;
    }
  }
  return node;
}

double quadratic_form(const ElementMatrix& a, const Field& x, const Field& y) {
  double sum = 0;
  for (std::size_t i = 0; i < 16; ++i) {
    for (std::size_t j = 0; j < 16; ++j) {
      sum += x[i] * a[i][j] * y[j];
    }
  }
  return sum;
}

template <class Displacement>
Field sampled(const Nodes& node, Displacement u) {
  Field field{};
  for (std::size_t i = 0; i < 8; ++i) {
    const std::array<double, 2> at = u(node[i][0], node[i][1]);
    field[2 * i] = at[0];
    field[2 * i + 1] = at[1];
  }
  return field;
}

// ∫ x² dA over the polygon of the corners, by Green's theorem.
double second_moment_x(const Nodes& node) {
  double sum = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const double x0 = node[i][0], y0 = node[i][1], x1 = node[(i + 1) % 4][0], y1 = node[(i + 1) % 4][1];
    sum += (x0 * x0 + x0 * x1 + x1 * x1) * (x0 * y1 - x1 * y0) / 12;
  }
  return sum;
}

double area(const Nodes& node) {
  double sum = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    sum += (node[i][0] * node[(i + 1) % 4][1] - node[(i + 1) % 4][0] * node[i][1]) / 2;
  }
  return sum;
}

TEST(Element, RigidMotionsHaveNoStrainEnergy) {
  const Nodes node = skewed();
  const ElementMatrix k = modal::quadrilateral8(node, material).stiffness;
  const double scale = material.youngs_modulus * material.thickness;
  for (const Field& u : {sampled(node,
                                 [](double, double) {
                                   return std::array{1.0, 0.0};
                                 }),
                         sampled(node,
                                 [](double, double) {
                                   return std::array{0.0, 1.0};
                                 }),
                         sampled(node, [](double x, double y) {
                           return std::array{-y, x};
                         })}) {
    EXPECT_NEAR(quadratic_form(k, u, u), 0.0, 1e-12 * scale);
  }
}

TEST(Element, ConstantStrainsHaveTheEnergyOfTheContinuum) {
  const Nodes node = skewed();
  const ElementMatrix k = modal::quadrilateral8(node, material).stiffness;
  const double e11 = 1.5, e22 = -0.7, g12 = 0.9;
  const Field u = sampled(node, [&](double x, double y) { return std::array{e11 * x + g12 * y, e22 * y}; });
  const double nu = material.poisson_ratio;
  const double energy = material.youngs_modulus / (1 - nu * nu) *
                        (e11 * e11 + e22 * e22 + 2 * nu * e11 * e22 + (1 - nu) / 2 * g12 * g12) * area(node) *
                        material.thickness;
  EXPECT_NEAR(quadratic_form(k, u, u), energy, 1e-12 * energy);
}

TEST(Element, KineticEnergyIsExactForConstantAndLinearVelocity) {
  const Nodes node = skewed();
  const ElementMatrix m = modal::quadrilateral8(node, material).mass;
  const double surface_density = material.density * material.thickness;
  const Field along_x = sampled(node, [](double, double) { return std::array{1.0, 0.0}; });
  const Field along_y = sampled(node, [](double, double) { return std::array{0.0, 1.0}; });
  const Field growing = sampled(node, [](double x, double) { return std::array{0.0, x}; });
  const double total = surface_density * area(node);
  EXPECT_NEAR(quadratic_form(m, along_x, along_x), total, 1e-12 * total);
  EXPECT_NEAR(quadratic_form(m, along_x, along_y), 0.0, 1e-12 * total);
  EXPECT_NEAR(quadratic_form(m, growing, growing), surface_density * second_moment_x(node), 1e-12 * total);
}

}  // namespace
