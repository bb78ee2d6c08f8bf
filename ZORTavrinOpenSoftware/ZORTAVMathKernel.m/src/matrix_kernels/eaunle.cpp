// SPDX-License-Identifier: MIT
// The pattern of Aᵀ from the pattern of A: a counting sort of the entries by column (Gustavson, "Two fast algorithms
// for sparse matrices: multiplication and permuted transposition", ACM TOMS 4, 1978). Rows are taken in order, so every
// row of the result ascends.
#include <algorithm>
#include <cstdint>

#include "ZORTAVSparsePatterns.h"

void eaunle(const int32_t* ncol, const int32_t* nrow, const int32_t* /*reserved*/, const int32_t* ptr_a,
            const int32_t* idx_a, int32_t* ptr_t, int32_t* idx_t) {
  const std::int64_t columns = *ncol;
  const std::int64_t rows = *nrow;
  std::fill_n(ptr_t, columns + 1, 0);
  for (std::int64_t p = 0; p < ptr_a[rows]; ++p) {
    ++ptr_t[idx_a[p]];
  }
  // The slot of a column holds the entries before it; filling moves it on to the column's last position.
  std::int32_t before = 0;
  for (std::int64_t c = 1; c <= columns; ++c) {
    const std::int32_t count = ptr_t[c];
    ptr_t[c] = before;
    before += count;
  }
  for (std::int64_t i = 0; i < rows; ++i) {
    for (std::int64_t p = ptr_a[i]; p < ptr_a[i + 1]; ++p) {
      idx_t[ptr_t[idx_a[p]]++] = static_cast<std::int32_t>(i + 1);
    }
  }
}
