/* SPDX-License-Identifier: MIT */
/* Tip deflection of a steel cantilever (IPE 200) under a point load, by beam elements: K·u = f with K in packed
 * storage, factored by eaxfch2 and solved by eacort. Bernoulli's beam has the solution w = P·L³ / (3·E·I) at the tip,
 * which cubic elements reproduce.
 *
 *   gcc cantilever.c $(pkg-config --cflags --libs ZORTAVMathKernel) -lm
 */
#include <math.h>
#include <stdio.h>

#include "ZORTAVMathKernel.h"

enum { ELEMENTS = 12, UNKNOWNS = 2 * ELEMENTS, PACKED = UNKNOWNS * (UNKNOWNS + 1) / 2 };

/* Position of element (i, j), j <= i, both counted from 0, in a lower triangle packed by rows. */
static int packed(int i, int j) {
  return i * (i + 1) / 2 + j;
}

/* Adds the stiffness of one element; its nodes have a deflection and a rotation each, and node 0 is clamped. */
static void add_element(double* k, int element, double ei, double h) {
  const double c = ei / (h * h * h);
  const double stiffness[4][4] = {{12 * c, 6 * c * h, -12 * c, 6 * c * h},
                                  {6 * c * h, 4 * c * h * h, -6 * c * h, 2 * c * h * h},
                                  {-12 * c, -6 * c * h, 12 * c, -6 * c * h},
                                  {6 * c * h, 2 * c * h * h, -6 * c * h, 4 * c * h * h}};
  const int first = 2 * element - 2; /* the clamped node has no unknowns */
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j <= i; ++j) {
      if (first + j >= 0) {
        k[packed(first + i, first + j)] += stiffness[i][j];
      }
    }
  }
}

int main(void) {
  const double length = 3.0, e = 210e9, inertia = 1.943e-5, load = 10e3; /* m, Pa, m^4, N */
  double k[PACKED] = {0}, u[UNKNOWNS] = {0};
  for (int element = 0; element < ELEMENTS; ++element) {
    add_element(k, element, e * inertia, length / ELEMENTS);
  }
  u[UNKNOWNS - 2] = load;

  const int32_t n = UNKNOWNS, first = 1;
  const double smallest_pivot = 0.0;
  int32_t failed_row;
  double pivot;
  eaxfch2(&n, &first, &n, &smallest_pivot, k, &failed_row, &pivot);
  if (failed_row != 0) {
    printf("the structure is a mechanism: pivot %g in row %d\n", pivot, (int)failed_row);
    return 1;
  }
  eacort(&n, &n, k, u);

  const double tip = u[UNKNOWNS - 2], exact = load * length * length * length / (3 * e * inertia);
  printf("deflection of the tip %.6f mm, P L^3 / 3 E I = %.6f mm\n", 1e3 * tip, 1e3 * exact);
  return fabs(tip - exact) < 1e-8 * exact ? 0 : 1;
}
