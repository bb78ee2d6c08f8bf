// SPDX-License-Identifier: MIT
// T := A⁻¹·B and S := Bᵀ·A⁻¹·B for a packed symmetric A, by its explicit inverse R.
#include <cstdint>

#include "ZORTAVInversion.h"
#include "ZORTAVMatrixProduct.h"
#include "ZORTAVMatrixUtilities.h"

int32_t eaxrmc3(const int32_t* n, const int32_t* m, double* a, const double* b, const int32_t* ldb, double* d,
                double* v, double* w, double* r, double* t, double* s, int32_t* ierr) {
  if (eaxinvs(n, a, d, v, w, r, ierr) != 0) {
    return 1;
  }
  const double alpha = 1;
  const double beta = 0;
  if (*n > 0 && *m > 0) {
    eagemm("N", "N", n, m, n, &alpha, r, n, b, ldb, &beta, t, n);
  }

  // The upper triangle; the lower one is its mirror image, so that S is symmetric to the last bit.
  const int32_t contiguous = 1;
  const std::int64_t rows = *n > 0 ? *n : 0;
  const std::int64_t columns = *m;
  for (std::int64_t j = 0; j < columns; ++j) {
    for (std::int64_t i = 0; i <= j; ++i) {
      const double product = eaxscl(n, b + i * *ldb, &contiguous, t + j * rows, &contiguous);
      s[i + j * columns] = product;
      s[j + i * columns] = product;
    }
  }
  return 0;
}
