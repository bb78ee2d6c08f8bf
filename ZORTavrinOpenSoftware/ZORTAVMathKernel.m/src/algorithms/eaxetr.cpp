// SPDX-License-Identifier: MIT
// T = Qᵀ·A·Q, tridiagonal, by Householder reflectors H = I − u·uᵀ/h on the packed rows of A, from the last row upward.
// Method: Martin, Reinsch and Wilkinson, Handbook for Automatic Computation II, contribution II/2 (tred3), without the
// scaling of the rows.
//
// A reflector's update A := A − u·qᵀ − q·uᵀ is held back: the next row is updated first, which gives the next
// reflector, and the update of the rest and the product with that reflector share one pass over the triangle.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "ZORTAVEigenSolver.h"
#include "algorithms/eigen_kernel_table.h"

namespace {

double* row(double* a, std::size_t i) {
  return a + i * (i + 1) / 2;
}

// p := A·u/h for the product in p, then q := p − (pᵀ·u/2h)·u in its place.
void finish_product(const zortav::EigenKernelTable& kernels, std::size_t l, double h, const double* u, double* p) {
  const double inverse = 1.0 / h;
  for (std::size_t j = 0; j < l; ++j) {
    p[j] = p[j] * inverse;
  }
  const double hh = kernels.dot(l, p, u) / (h + h);
  for (std::size_t j = 0; j < l; ++j) {
    p[j] = p[j] - hh * u[j];
  }
}

}  // namespace

void eaxetr(const int32_t* order, double* a, double* d, double* e) {
  if (*order < 2) {
    d[0] = a[0];
    e[0] = 0.0;
    return;
  }
  const zortav::EigenKernelTable& kernels = zortav::eigen_kernels();
  const std::size_t n = static_cast<std::size_t>(*order);
  // What is held back. The vectors q and p take turns in those parts of d and e that are not yet final.
  bool pending = false;
  const double* pending_u = row(a, n - 1);
  double* q = d;
  double* p = e;
  for (std::size_t l = n - 1; l >= 2; --l) {
    double* const u = row(a, l);
    if (pending) {
      for (std::size_t k = 0; k <= l; ++k) {
        u[k] = u[k] - pending_u[l] * q[k] - q[l] * pending_u[k];
      }
    }
    double h = kernels.dot(l, u, u);
    const double f = u[l - 1];
    d[l] = u[l];
    if (h == 0.0) {
      e[l] = f;
      u[l] = 0.0;
      if (pending) {
        kernels.update(l, a, pending_u, q);
        pending = false;
      }
      continue;
    }
    const double g = f < 0.0 ? std::sqrt(h) : -std::sqrt(h);
    e[l] = g;
    h = h - f * g;
    u[l - 1] = f - g;
    u[l] = h;
    if (pending) {
      kernels.update_and_multiply(l, a, pending_u, q, u, p);
    } else {
      kernels.multiply(l, a, u, p);
    }
    finish_product(kernels, l, h, u, p);
    pending = true;
    pending_u = u;
    std::swap(p, q);
  }
  if (pending) {
    kernels.update(2, a, pending_u, q);
  }
  e[1] = a[1];
  d[1] = a[2];
  d[0] = a[0];
  e[0] = 0.0;
}
