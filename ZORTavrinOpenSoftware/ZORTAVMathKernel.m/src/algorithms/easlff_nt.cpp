// SPDX-License-Identifier: MIT
// Eliminates the first m equations of a symmetric front: A = L·D·Lᵀ on the eliminated columns, the Schur complement on
// the rest. Right-looking symmetric elimination without interchanges (Golub and Van Loan, Matrix Computations, 4th
// ed., section 4.1) in blocks of three pivots, as frontal solvers do it (Duff and Reid, ACM TOMS 9 (1983) 302-325).
//
// The order of the operations on every element is fixed; no operation is fused. With the pivots d1, d2, d3 of a block
// at k, k+1, k+2, r = 1/d, and u1 = a(k+1,k), u2 = a(k+2,k) before they are scaled:
//
//   l(k+1,k) = u1·r1;  a(k+1,k+1) -= l(k+1,k)·u1;
//   l(k+2,k) = u2·r1;  t = a(k+2,k+1) - l(k+2,k)·u1;  l(k+2,k+1) = t·r2;
//   a(k+2,k+2) = (a(k+2,k+2) - u2·l(k+2,k)) - t·l(k+2,k+1);
//   rows i below:  l(i,k) = a(i,k)·r1;  l(i,k+1) = (a(i,k+1) - l(i,k)·u1)·r2;
//                  l(i,k+2) = ((a(i,k+2) - u2·l(i,k)) - l(i,k+1)·t)·r3;
//   trailing (i,c): a(i,c) = ((l(i,k)·g1 + a(i,c)) + l(i,k+1)·g2) + l(i,k+2)·g3,  g1 = -l(c,k)·d1, and so on.
//
// The one or two pivots left over do the same with the terms they have; there the last diagonal of an odd trailing
// order is a - (l·l)·d1 - (l·l)·d2 instead.
#include <cstdint>

#include "ZORTAVFactorization.h"
#include "algorithms/factor_kernel_table.h"

namespace zortav {
namespace {

// n·m - m(m + 1)/2 as 32-bit machine arithmetic gives it: products wrap, the halving rounds toward zero.
std::int32_t clearing_bound(std::int32_t n, std::int32_t m) {
  const auto rows = static_cast<std::uint32_t>(n);
  const auto columns = static_cast<std::uint32_t>(m);
  const std::int32_t half = static_cast<std::int32_t>(columns * (columns + 1U)) / 2;
  return static_cast<std::int32_t>(rows * columns - static_cast<std::uint32_t>(half));
}

void count_operations(double n, double m, float& flop1, float& flop2) {
  const double p = m * (m + 1);
  const double factorization = 2 * m * n - m * m + (n * n + 2) * m - (2 * n + 1) * p / 2 + (2 * m + 1) * p / 6;
  const double second = (n * m - p / 2) * 4 + m;
  flop1 = flop1 + static_cast<float>(factorization);
  flop2 = flop2 + static_cast<float>(second);
}

}  // namespace
}  // namespace zortav

int32_t easlff_nt(const int32_t* n, const int32_t* m, double* a, double* rmin, const double* d0, const double* tolp,
                  const double* tolr, int32_t* neq, int32_t* npiv, float* flop1, float* flop2, int32_t* istat) {
  zortav::count_operations(*n, *m, *flop1, *flop2);
  zortav::PivotTest test{.initial_diagonal = d0,
                         .smallest = *tolp,
                         .smallest_ratio = *tolr,
                         .ratio_minimum = *rmin,
                         .equation = *neq,
                         .accepted = *npiv,
                         .status = 0};
  const bool done = zortav::factor_kernels().eliminate_front(*n, *m, a, zortav::clearing_bound(*n, *m), test);
  *rmin = test.ratio_minimum;
  *neq = test.equation;
  *npiv = test.accepted;
  *istat = test.status;
  return done ? 0 : 1;
}
