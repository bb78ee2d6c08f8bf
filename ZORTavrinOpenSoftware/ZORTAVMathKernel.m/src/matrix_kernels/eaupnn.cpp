// SPDX-License-Identifier: MIT
// The row lengths of P, the pattern of Aᵀ·A without its diagonal: row i of P is the union of the rows of A that have an
// entry in column i. Short rows are sorted to be counted (pattern_rows_kernel.h). In the others mark(j) = i says that
// column j is counted in row i, so nothing is cleared between the rows (Gustavson, ACM TOMS 4, 1978).
#include <cstdint>

#include "ZORTAVSparsePatterns.h"
#include "ZORTAVVectorKernels.h"
#include "matrix_kernels/pattern_kernel_table.h"

namespace {

std::int32_t marked_length(const zortav::PatternPair& a, std::int32_t i, std::int32_t* mark) {
  mark[i - 1] = i;
  std::int32_t count = 0;
  for (std::int64_t q = a.ptr_t[i - 1]; q < a.ptr_t[i]; ++q) {
    const std::int32_t k = a.idx_t[q];
    for (std::int64_t p = a.ptr_a[k - 1]; p < a.ptr_a[k]; ++p) {
      std::int32_t& stamp = mark[a.idx_a[p] - 1];
      if (stamp != i) {
        stamp = i;
        ++count;
      }
    }
  }
  return count;
}

}  // namespace

void eaupnn(const int32_t* n, const int32_t* nrow, const int32_t* reserved, const int32_t* ptr_a, const int32_t* idx_a,
            int32_t* ptr_t, int32_t* idx_t, int32_t* mark, int32_t* ptr_p, int32_t* total) {
  const std::int32_t order = *n;
  const std::int32_t unit = 1;
  eaunle(n, nrow, reserved, ptr_a, idx_a, ptr_t, idx_t);
  e_izero(n, mark, &unit);
  const zortav::PatternPair a{ptr_a, idx_a, ptr_t, idx_t};
  const auto count_rows = zortav::pattern_kernels().count_rows;
  ptr_p[0] = 0;
  for (std::int32_t i = 1; i <= order; ++i) {
    i = count_rows(a, i, order + 1, ptr_p + (i - 1));
    if (i <= order) {
      ptr_p[i] = ptr_p[i - 1] + marked_length(a, i, mark);
    }
  }
  *total = ptr_p[order];
}
