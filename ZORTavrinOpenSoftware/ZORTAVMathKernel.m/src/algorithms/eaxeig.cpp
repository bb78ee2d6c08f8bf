// SPDX-License-Identifier: MIT
// A = Z·diag(d)·Zᵀ for a packed symmetric A: Householder reduction to a tridiagonal T = Qᵀ·A·Q, the QL iteration
// T = S·diag(d)·Sᵀ, ordering of the pairs, back-transformation Z = Q·S.
#include <cstdint>
#include <cstdlib>

#include "ZORTAVEigenSolver.h"
#include "ZORTAVVectorKernels.h"

int32_t eaxeig(const int32_t* n, const int32_t* ord, double* a, double* d, double* v, double* e, int32_t* ierr) {
  eaxetr(n, a, d, e);

  // The n·n elements of V, column by column: their number may be beyond a 32-bit count. A negative n counts as |n|,
  // as it does in the product n·n.
  const int32_t rows = std::abs(*n);
  const int32_t contiguous = 1;
  for (int32_t column = 0; column < rows; ++column) {
    e_dzero(&rows, v + static_cast<std::int64_t>(column) * rows, &contiguous);
  }

  if (eaxeql(n, d, e, v, ierr) != 0) {
    return 1;
  }
  eaxeor(ord, n, d, v);
  eaxevp(n, a, v);
  return 0;
}
