// SPDX-License-Identifier: MIT
// c and s with  ( c  s) (a)   (r)
//               (-s  c) (b) = (0),   and z, from which c and s can be had back.
//
// r = ±sqrt(a² + b²) is formed from the ratio of the smaller to twice the larger magnitude, so that squares neither
// overflow nor underflow (Lawson, Hanson, Kincaid, Krogh, ACM TOMS 5, 1979).
#include <cmath>

#include "ZORTAVVectorKernels.h"

void e_drotg(double* a, double* b, double* c, double* s) {
  if (std::fabs(*a) > std::fabs(*b)) {
    const double u = *a + *a;
    const double v = *b / u;
    const double r = std::sqrt(0.25 + v * v) * u;
    *c = *a / r;
    *s = v * (*c + *c);
    *b = *s;
    *a = r;
  } else if (*b == 0) {
    *c = 1;
    *s = 0;
  } else {
    const double u = *b + *b;
    const double v = *a / u;
    const double r = std::sqrt(0.25 + v * v) * u;
    *s = *b / r;
    *c = v * (*s + *s);
    *b = *c != 0 ? 1 / *c : 1;
    *a = r;
  }
}
