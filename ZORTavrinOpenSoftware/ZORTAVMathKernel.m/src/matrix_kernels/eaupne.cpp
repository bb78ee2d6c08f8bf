// SPDX-License-Identifier: MIT
// Row pointers from the row numbers of entries sorted by row, for two blocks of rows one above the other: the last
// entry of a row is its pointer, and a row without entries repeats the pointer before it.
#include <cstdint>

#include "ZORTAVSparseKernels.h"
#include "ZORTAVSparsePatterns.h"

namespace {

constexpr std::int32_t type_integer4 = 3;

// Rows first+1..last.
void repeat_over_empty_rows(std::int32_t first, std::int32_t last, std::int32_t* ptr) {
  for (std::int64_t l = std::int64_t{first} + 1; l <= last; ++l) {
    if (ptr[l] == 0) {
      ptr[l] = ptr[l - 1];
    }
  }
}

}  // namespace

void eaupne(const int32_t* q, const int32_t* m, const int32_t* p, const int32_t* nrows, const int32_t* row_of,
            int32_t* ptr) {
  const std::int32_t pointers = *nrows + 1;
  eaxraz(&type_integer4, ptr, &pointers);
  for (std::int32_t e = 1; e <= *m; ++e) {
    ptr[row_of[e - 1]] = e;
  }
  repeat_over_empty_rows(0, *p, ptr);
  for (std::int32_t e = *m + 1; e <= *q; ++e) {
    ptr[std::int64_t{*p} + row_of[e - 1]] = e;
  }
  repeat_over_empty_rows(*p, *nrows, ptr);
}
