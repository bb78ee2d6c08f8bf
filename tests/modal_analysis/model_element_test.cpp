// SPDX-License-Identifier: MIT
// The element against the continuum; the built-in model is held to its frequencies by the test of the program.
#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "structure/quadrilateral8.h"

namespace {

using Field = std::array<double, 16>;

constexpr modal::Membrane material{70e9, 0.33, 2700.0, 0.02};

// A general quadrilateral with straight sides, its area and ∫ x² dA, both by Green's theorem.
constexpr std::array<std::array<double, 2>, 8> skewed{
    {{0.0, 0.0}, {3.0, -0.5}, {2.5, 2.0}, {0.4, 1.2}, {1.5, -0.25}, {2.75, 0.75}, {1.45, 1.6}, {0.2, 0.6}}};
constexpr double area = (7.25 + 2.2) / 2;
constexpr double second_moment = (22.75 * 7.25 + 7.41 * 2.2) / 12;

double quadratic_form(const modal::ElementMatrix& a, const Field& x, const Field& y) {
  double sum = 0;
  for (std::size_t i = 0; i < 16; ++i) {
    for (std::size_t j = 0; j < 16; ++j) {
      sum += x[i] * a[i][j] * y[j];
    }
  }
  return sum;
}

Field sampled(const std::function<std::array<double, 2>(double, double)>& u) {
  Field field{};
  for (std::size_t i = 0; i < 8; ++i) {
    const auto [along_x, along_y] = u(skewed[i][0], skewed[i][1]);
    field[2 * i] = along_x;
    field[2 * i + 1] = along_y;
  }
  return field;
}

const Field along_x = sampled([](double, double) { return std::array{1.0, 0.0}; });
const Field along_y = sampled([](double, double) { return std::array{0.0, 1.0}; });

TEST(Element, StrainEnergyIsThatOfTheContinuum) {
  const modal::ElementMatrix k = modal::quadrilateral8(skewed, material).stiffness;
  const double e11 = 1.5, e22 = -0.7, g12 = 0.9, nu = material.poisson_ratio;
  const Field strained = sampled([&](double x, double y) { return std::array{e11 * x + g12 * y, e22 * y}; });
  const double energy = material.youngs_modulus / (1 - nu * nu) * area * material.thickness *
                        (e11 * e11 + e22 * e22 + 2 * nu * e11 * e22 + (1 - nu) / 2 * g12 * g12);
  EXPECT_NEAR(quadratic_form(k, strained, strained), energy, 1e-12 * energy);
  const Field rotated = sampled([](double x, double y) { return std::array{-y, x}; });
  for (const Field& rigid : {along_x, along_y, rotated}) {
    EXPECT_NEAR(quadratic_form(k, rigid, rigid), 0.0, 1e-12 * energy);
  }
}

TEST(Element, KineticEnergyIsExactForConstantAndLinearVelocity) {
  const modal::ElementMatrix m = modal::quadrilateral8(skewed, material).mass;
  const double surface_density = material.density * material.thickness;
  const double total = surface_density * area;
  const Field growing = sampled([](double x, double) { return std::array{0.0, x}; });
  EXPECT_NEAR(quadratic_form(m, along_x, along_x), total, 1e-12 * total);
  EXPECT_NEAR(quadratic_form(m, along_x, along_y), 0.0, 1e-12 * total);
  EXPECT_NEAR(quadratic_form(m, growing, growing), surface_density * second_moment, 1e-12 * total);
}

}  // namespace
