// SPDX-License-Identifier: MIT
// A := A⁻¹ in place by Gauss-Jordan elimination (J. H. Wilkinson, C. Reinsch, Handbook for Automatic Computation II,
// contributions I/2 and I/3; N. J. Higham, Accuracy and Stability of Numerical Algorithms, 2nd ed., section 14.4).
//
// One step replaces pivot k, with p = A(k,k) and every i, j ≠ k:
//
//   A(i,j) := A(i,j) - A(i,k)·A(k,j)/p,   A(i,k) := -A(i,k)/p,   A(k,j) := A(k,j)/p,   A(k,k) := 1/p.
//
// The order of the operations on an element is fixed, each product is rounded before it is added, and a multiplier of
// zero skips its column. Which elements are taken together is free: eaxinv_panel_kernel.h says how they are.
#include <cstdint>

#include "ZORTAVInversion.h"
#include "algorithms/inversion/inversion_kernel_table.h"
#include "algorithms/inversion/plain_inversion.h"

namespace zortav {
namespace {

constexpr std::int32_t mode_general = 1;
constexpr std::int32_t mode_symmetric_untested = 2;

// From these orders on panels are faster (measured on Zen 4 with AVX-512).
constexpr std::int32_t least_general_order = 80;
constexpr std::int32_t least_symmetric_order = 128;

void invert_general(std::int32_t n, std::int32_t lda, double* a, std::int32_t* ipiv) {
  if (n < least_general_order) {
    PlainInversion(lda, n, a).invert_general(ipiv);
  } else {
    inversion_kernels().invert_general(n, lda, a, ipiv);
  }
}

bool invert_symmetric(std::int32_t n, std::int32_t lda, double* a, bool tested) {
  return n < least_symmetric_order ? PlainInversion(lda, n, a).invert_symmetric(tested)
                                   : inversion_kernels().invert_symmetric(n, lda, a, tested);
}

}  // namespace
}  // namespace zortav

void eaxinv(const int32_t* mode, const int32_t* lda, const int32_t* n, int32_t* ipiv, int32_t* ierr, double* a) {
  using namespace zortav;
  switch (*mode) {
    case mode_general:
      invert_general(*n, *lda, a, ipiv);
      break;
    case mode_symmetric_untested:
      invert_symmetric(*n, *lda, a, false);
      break;
    default:
      *ierr = invert_symmetric(*n, *lda, a, true) ? 0 : 1;
      break;
  }
}
