/* SPDX-License-Identifier: MIT */
/* Solves A·x = b for A = Bᵀ·B + I three ways that must agree: the product makes A, the packed Cholesky factorization
 * solves, the eigen-solver's decomposition solves again. Prints the largest differences; exit status 0 when they are
 * roundings. */
#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

#include "ZORTAVMathKernel.h"

enum { n = 24, packed = n * (n + 1) / 2 };

static double largest_difference(const double* a, const double* b) {
  double largest = 0.0;
  for (int i = 0; i < n; ++i) {
    largest = fmax(largest, fabs(a[i] - b[i]));
  }
  return largest;
}

/* x := V·D⁻¹·Vᵀ·b; what x holds must be numbers: eagemv multiplies it by its beta, also by 0. */
static void solve_by_eigenvectors(const double* d, const double* v, const double* b, double* x) {
  const int32_t order = n, inc = 1;
  const double one = 1.0, zero = 0.0;
  double w[n] = {0};
  eagemv("T", &order, &order, &one, v, &order, b, &inc, &zero, w, &inc, 1);
  for (int i = 0; i < n; ++i) {
    w[i] /= d[i];
  }
  eagemv("N", &order, &order, &one, v, &order, w, &inc, &zero, x, &inc, 1);
}

int main(void) {
  const int32_t order = n, ascending = 1, inc = 1, all = packed;
  const double one = 1.0, zero = 0.0;
  double b[n * n], a[n * n], lower[packed], factor[packed], d[n], v[n * n], work[n], right[n], x[n], y[n] = {0},
                                                                                                     r[n] = {0};
  int32_t ierr = 0, decision = 0;

  ehaldb(&decision); /* the library looks at its environment */
  for (int i = 0; i < n * n; ++i) {
    b[i] = ((i * 37) % 101) / 101.0 - 0.5;
  }
  eagemm("T", "N", &order, &order, &order, &one, b, &order, b, &order, &zero, a, &order, 1, 1);
  for (int i = 0, k = 0; i < n; ++i) {
    a[i + i * n] += 1.0;
    right[i] = i + 1.0;
    for (int j = 0; j <= i; ++j) {
      lower[k++] = a[i + j * n];
    }
  }

  e_dcopy(&all, lower, &inc, factor, &inc);
  const double tolerance = 1e-12;
  double pivot = 0.0;
  const int32_t first = 1;
  eaxfch(&order, &first, &order, &tolerance, factor, &ierr, &pivot);
  if (ierr != 0) {
    printf("the factorization failed: %d\n", (int)ierr);
    return EXIT_FAILURE;
  }
  e_dcopy(&order, right, &inc, x, &inc);
  eacort(&all, &order, factor, x);

  if (eaxeig(&order, &ascending, lower, d, v, work, &ierr) != 0) {
    printf("the eigen-solver failed: %d\n", (int)ierr);
    return EXIT_FAILURE;
  }
  solve_by_eigenvectors(d, v, right, y);

  eagemv("N", &order, &order, &one, a, &order, x, &inc, &zero, r, &inc, 1);
  const double residual = largest_difference(r, right);
  const double difference = largest_difference(x, y);
  printf("largest residual %.1e, largest difference of the two solutions %.1e\n", residual, difference);
  return residual < 1e-9 && difference < 1e-9 ? EXIT_SUCCESS : EXIT_FAILURE;
}
