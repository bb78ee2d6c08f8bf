// SPDX-License-Identifier: MIT
// Row pointers from the row numbers of entries sorted by row, for two blocks of rows one above the other: the last
// entry of a row is its pointer, and a row without entries repeats the pointer before it.
#include <cstdint>

#include "ZORTAVSparseKernels.h"
#include "ZORTAVSparsePatterns.h"

namespace {

constexpr std::int32_t type_integer4 = 3;

// Entries first+1..last, the rows of their block beginning behind ptr. Counted in 64 bits: a count of 2^31-1 is
// allowed.
void point_to_last_entries(std::int64_t first, std::int64_t last, const std::int32_t* row_of, std::int32_t* ptr) {
  for (std::int64_t e = first + 1; e <= last; ++e) {
    ptr[row_of[e - 1]] = static_cast<std::int32_t>(e);
  }
}

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
  point_to_last_entries(0, *m, row_of, ptr);
  repeat_over_empty_rows(0, *p, ptr);
  point_to_last_entries(*m, *q, row_of, ptr + *p);
  repeat_over_empty_rows(*p, *nrows, ptr);
}
