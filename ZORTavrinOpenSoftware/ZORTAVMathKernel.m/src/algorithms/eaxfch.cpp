// SPDX-License-Identifier: MIT
// A = L·Lᵀ by the framework's factorization, arguments and result passed through.
#include <cstdint>

#include "ZORMathematics.h"
#include "ZORTAVFactorization.h"

int32_t eaxfch(const int32_t* n, const int32_t* n1, const int32_t* n2, const double* tol, double* a, int32_t* ierr,
               double* piv) {
  return Cholesky(n, n1, n2, tol, a, ierr, piv);
}
