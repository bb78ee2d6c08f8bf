// SPDX-License-Identifier: MIT
// The row lengths of P, the pattern of Aᵀ·A without its diagonal: row i of P is the union of the rows of A that have an
// entry in column i. mark(j) = i says that column j is counted in row i, so nothing is cleared between the rows
// (Gustavson, ACM TOMS 4, 1978).
#include <cstdint>

#include "ZORTAVSparsePatterns.h"
#include "ZORTAVVectorKernels.h"

void eaupnn(const int32_t* n, const int32_t* nrow, const int32_t* reserved, const int32_t* ptr_a, const int32_t* idx_a,
            int32_t* ptr_t, int32_t* idx_t, int32_t* mark, int32_t* ptr_p, int32_t* total) {
  const std::int32_t order = *n;
  const std::int32_t unit = 1;
  eaunle(n, nrow, reserved, ptr_a, idx_a, ptr_t, idx_t);
  e_izero(n, mark, &unit);
  ptr_p[0] = 0;
  for (std::int32_t i = 1; i <= order; ++i) {
    mark[i - 1] = i;
    std::int32_t count = 0;
    for (std::int64_t q = ptr_t[i - 1]; q < ptr_t[i]; ++q) {
      const std::int32_t k = idx_t[q];
      for (std::int64_t p = ptr_a[k - 1]; p < ptr_a[k]; ++p) {
        std::int32_t& stamp = mark[idx_a[p] - 1];
        count += stamp != i ? 1 : 0;
        stamp = i;
      }
    }
    ptr_p[i] = ptr_p[i - 1] + count;
  }
  *total = ptr_p[order];
}
