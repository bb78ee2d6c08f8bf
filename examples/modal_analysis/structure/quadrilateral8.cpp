// SPDX-License-Identifier: MIT
// K = ∫ Bᵀ·D·B t dA,  M = ∫ Nᵀ·N ρ·t dA  over the element, by 3 × 3 Gauss points.
//
// The rule is exact for M on straight-sided elements: a product of two shape functions has degree 4 in each
// direction, the Jacobian determinant adds 1, and three points integrate degree 5. Shape functions and method:
// O. C. Zienkiewicz and R. L. Taylor, The Finite Element Method, volume 1, chapters on serendipity elements and
// numerical integration.
#include "structure/quadrilateral8.h"

#include <cstddef>

namespace modal {
namespace {

constexpr std::array<double, 8> corner_xi{-1, 1, 1, -1, 0, 1, 0, -1};
constexpr std::array<double, 8> corner_eta{-1, -1, 1, 1, -1, 0, 1, 0};

constexpr double gauss_abscissa = 0.774596669241483377;  // √(3/5)
constexpr std::array<double, 3> gauss_point{-gauss_abscissa, 0.0, gauss_abscissa};
constexpr std::array<double, 3> gauss_weight{5.0 / 9.0, 8.0 / 9.0, 5.0 / 9.0};

struct Shape {
  std::array<double, 8> n;
  std::array<double, 8> dxi;
  std::array<double, 8> deta;
};

Shape shape_functions(double xi, double eta) {
  Shape s{};
  for (std::size_t i = 0; i < 8; ++i) {
    const double a = corner_xi[i];
    const double b = corner_eta[i];
    if (i < 4) {
      s.n[i] = 0.25 * (1 + a * xi) * (1 + b * eta) * (a * xi + b * eta - 1);
      s.dxi[i] = 0.25 * a * (1 + b * eta) * (2 * a * xi + b * eta);
      s.deta[i] = 0.25 * b * (1 + a * xi) * (a * xi + 2 * b * eta);
    } else if (a == 0) {
      s.n[i] = 0.5 * (1 - xi * xi) * (1 + b * eta);
      s.dxi[i] = -xi * (1 + b * eta);
      s.deta[i] = 0.5 * b * (1 - xi * xi);
    } else {
      s.n[i] = 0.5 * (1 + a * xi) * (1 - eta * eta);
      s.dxi[i] = 0.5 * a * (1 - eta * eta);
      s.deta[i] = -eta * (1 + a * xi);
    }
  }
  return s;
}

void add_gauss_point(const std::array<std::array<double, 2>, 8>& node, const Membrane& membrane, double xi, double eta,
                     double weight, ElementMatrices& element) {
  const Shape s = shape_functions(xi, eta);
  double j11 = 0, j12 = 0, j21 = 0, j22 = 0;  // ∂(x, y)/∂(ξ, η)
  for (std::size_t i = 0; i < 8; ++i) {
    j11 += s.dxi[i] * node[i][0];
    j12 += s.dxi[i] * node[i][1];
    j21 += s.deta[i] * node[i][0];
    j22 += s.deta[i] * node[i][1];
  }
  const double det = j11 * j22 - j12 * j21;
  std::array<double, 8> dx{};
  std::array<double, 8> dy{};
  for (std::size_t i = 0; i < 8; ++i) {
    dx[i] = (j22 * s.dxi[i] - j12 * s.deta[i]) / det;
    dy[i] = (j11 * s.deta[i] - j21 * s.dxi[i]) / det;
  }

  const double nu = membrane.poisson_ratio;
  const double volume = weight * det * membrane.thickness;
  const double direct = volume * membrane.youngs_modulus / (1 - nu * nu);
  const double shear = direct * (1 - nu) / 2;
  const double mass = volume * membrane.density;
  for (std::size_t i = 0; i < 8; ++i) {
    for (std::size_t j = 0; j < 8; ++j) {
      element.stiffness[2 * i][2 * j] += direct * dx[i] * dx[j] + shear * dy[i] * dy[j];
      element.stiffness[2 * i][2 * j + 1] += direct * nu * dx[i] * dy[j] + shear * dy[i] * dx[j];
      element.stiffness[2 * i + 1][2 * j] += direct * nu * dy[i] * dx[j] + shear * dx[i] * dy[j];
      element.stiffness[2 * i + 1][2 * j + 1] += direct * dy[i] * dy[j] + shear * dx[i] * dx[j];
      element.mass[2 * i][2 * j] += mass * s.n[i] * s.n[j];
      element.mass[2 * i + 1][2 * j + 1] += mass * s.n[i] * s.n[j];
    }
  }
}

}  // namespace

ElementMatrices quadrilateral8(const std::array<std::array<double, 2>, 8>& node, const Membrane& membrane) {
  ElementMatrices element;
  for (std::size_t g = 0; g < 3; ++g) {
    for (std::size_t h = 0; h < 3; ++h) {
      add_gauss_point(node, membrane, gauss_point[g], gauss_point[h], gauss_weight[g] * gauss_weight[h], element);
    }
  }
  return element;
}

}  // namespace modal
