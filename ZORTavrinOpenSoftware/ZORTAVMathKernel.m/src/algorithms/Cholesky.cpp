// SPDX-License-Identifier: MIT
// A = L·Lᵀ, the factorization that the framework's mathematics library offers. The rows of eaxfch2 are as fast as any
// other order of the sums would be, so this is eaxfch2 with a result: one factorization, the same bits by either name.
#include <cstdint>

#include "ZORMathematics.h"
#include "ZORTAVFactorization.h"

int32_t Cholesky(const int32_t* n, const int32_t* n1, const int32_t* n2, const double* tol, double* a, int32_t* ierr,
                 double* piv) {
  eaxfch2(n, n1, n2, tol, a, ierr, piv);
  return *ierr == 0 ? 0 : 1;
}
