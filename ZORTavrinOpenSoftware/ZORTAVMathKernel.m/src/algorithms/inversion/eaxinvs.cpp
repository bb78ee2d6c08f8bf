// SPDX-License-Identifier: MIT
// R := A⁻¹ = V·diag(1/λ)·Vᵀ for a packed symmetric A = V·diag(λ)·Vᵀ
// (G. H. Golub, C. F. Van Loan, Matrix Computations, 4th ed., section 8.1).
#include <cmath>
#include <cstdint>
#include <limits>

#include "ZORTAVEigenSolver.h"
#include "ZORTAVInversion.h"
#include "ZORTAVMatrixUtilities.h"

namespace {

constexpr std::int32_t by_magnitude = 2;
constexpr std::int32_t singular = -1;

// The error of the computed eigenvalues: n·eps·|λ|max. One that is not a number is not above it.
bool is_singular(std::int32_t n, const double* lambda) {
  const double error = n * std::numeric_limits<double>::epsilon() * std::abs(lambda[0]);
  for (std::int32_t i = 0; i < n; ++i) {
    if (!(std::abs(lambda[i]) > error)) {
      return true;
    }
  }
  return false;
}

}  // namespace

int32_t eaxinvs(const int32_t* n, double* a, double* d, double* v, double* w, double* r, int32_t* ierr) {
  *ierr = 0;
  if (*n < 1) {
    return 0;
  }
  if (eaxeig(n, &by_magnitude, a, d, v, w, ierr) != 0) {
    return 1;
  }
  if (is_singular(*n, d)) {
    *ierr = singular;
    return 1;
  }
  // What the eigen-solver left in the triangle has served; it has room for the reciprocals.
  for (std::int32_t i = 0; i < *n; ++i) {
    a[i] = 1 / d[i];
  }
  ebhpap(n, v, a, w, r);
  return 0;
}
