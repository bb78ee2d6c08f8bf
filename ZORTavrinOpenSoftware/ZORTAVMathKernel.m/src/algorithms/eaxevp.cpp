// SPDX-License-Identifier: MIT
// V := Q·V with Q the product of the reflectors that eaxetr left in the packed rows of A:
// for i = 3..n, u = a(i,1..i-1), h = a(i,i) ≠ 0, every column v := v − (uᵀ·v/h)·u.
// Method: Martin, Reinsch and Wilkinson, Handbook for Automatic Computation II, contribution II/2 (trbak3);
// blocks of reflectors: eaxevp_kernel.h.
#include <cstdint>

#include "ZORTAVEigenSolver.h"
#include "algorithms/eigen_kernel_table.h"

void eaxevp(const int32_t* order, const double* a, double* v) {
  if (*order > 0) {
    zortav::eigen_kernels().reflect(static_cast<std::size_t>(*order), a, v);
  }
}
