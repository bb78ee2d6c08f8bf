// SPDX-License-Identifier: MIT
// A = L·Lᵀ by bordering (Golub and Van Loan, Matrix Computations, 4th ed., section 4.2): row i of L follows from the
// rows above it,
//
//   L(i,j) = (A(i,j) - Σ_{k<j} L(i,k)·L(j,k)) / L(j,j),  j < i;   L(i,i) = sqrt(A(i,i) - Σ_{k<i} L(i,k)²).
//
// The order of the operations is fixed; every path and every instruction-set level keeps it, without fused operations.
//
// Ordered sum of x(k)·y(k), k = 1..len, from a start value s. len < 9: s + x(1)y(1) + x(2)y(2) + ... one after the
// other. len >= 9: with w = 8·floor(len/8), one partial sum starts at s and takes the terms k = 1, 3, .., w-1, the
// other starts at 0 and takes k = 2, 4, .., w; the two are added, first plus second; the terms w+1..len follow one
// after the other.
//
// Columns j of row i in groups of four, j0+1..j0+4 with j0 = 0, 4, 8, ..; the last group holds the (i-1) mod 4 columns
// left. For each column of a group
//   1. t(j) = ordered sum of L(i,k)·L(j,k), k = 1..j0, from -A(i,j);
//   2. t(j) = t(j) + L(i,k)·L(j,k) for k = j0+1, .., j-1, in that order;
//   3. L(i,j) = t(j) / (-L(j,j)).
// Pivot: d = A(i,i) - (ordered sum of L(i,k)·L(i,k), k = 1..i-1, from 0).
//
// An element's value depends on its row and column only, so the range of rows and how the caller divides it change
// no bit.
#include <cstdint>

#include "ZORTAVFactorization.h"
#include "algorithms/factor_kernel_table.h"

void eaxfch2(const int32_t* /*n*/, const int32_t* n1, const int32_t* n2, const double* tol, double* a, int32_t* ierr,
             double* piv) {
  double refused = 0;
  const std::int64_t row = zortav::factor_kernels().factor_rows(*n1, *n2, *tol, a, &refused);
  if (row != 0) {
    *piv = refused;
  }
  *ierr = static_cast<int32_t>(row);
}
