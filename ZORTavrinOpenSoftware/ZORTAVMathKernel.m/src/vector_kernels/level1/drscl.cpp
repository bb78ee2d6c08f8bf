// SPDX-License-Identifier: MIT
// x(i) := x(i)/sa as one multiplication by 1/sa. Division by 0 or 1 is left undone, and 1/sa is not guarded against
// overflow: both on purpose.
#include "ZORTAVVectorKernels.h"

void drscl(const int32_t* n, const double* sa, double* x, const int32_t* incx) {
  if (*n <= 0 || *sa == 0 || *sa == 1) {
    return;
  }
  const double factor = 1 / *sa;
  e_dscal(n, &factor, x, incx);
}
