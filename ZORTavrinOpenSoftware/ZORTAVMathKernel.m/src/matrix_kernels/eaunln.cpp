// SPDX-License-Identifier: MIT
// The column indices of P, the pattern of Aᵀ·A without its diagonal, row after row and ascending in each.
//
// The work array has the form of a linked list in ascending order: list(1) its head, list(j+1) the successor of j, n+1
// its end. Inserting in order costs the square of a row's length. Here the columns of a row are gathered where they
// will stand in the result, list(j+1) saying that j is there, and put in order at the end: by sorting, or, when the row
// fills much of the range that it spans, by walking through list over that range. What remains in list is the same: the
// slots cleared, the head on the first column of the last row.
#include <algorithm>
#include <cstdint>

#include "ZORTAVSparsePatterns.h"
#include "ZORTAVVectorKernels.h"

namespace {

constexpr std::int32_t in_row = 1;
constexpr std::int32_t own_row = -1;
// A sort of m numbers costs about as much as walking through this many slots for each.
constexpr std::int64_t slots_per_sorted_number = 8;

// Puts the count distinct columns at row in ascending order and clears their slots.
void order_row(std::int32_t* row, std::int64_t count, std::int32_t lowest, std::int32_t highest, std::int32_t* list) {
  if (std::int64_t{highest} - lowest >= count * slots_per_sorted_number) {
    std::sort(row, row + count);
    for (std::int64_t e = 0; e < count; ++e) {
      list[row[e]] = 0;
    }
    return;
  }
  for (std::int32_t j = lowest; j <= highest; ++j) {
    if (list[j] == in_row) {
      *row++ = j;
      list[j] = 0;
    }
  }
}

}  // namespace

void eaunln(const int32_t* n, const int32_t* /*reserved1*/, const int32_t* /*reserved2*/, const int32_t* ptr_a,
            const int32_t* idx_a, const int32_t* ptr_t, const int32_t* idx_t, int32_t* list, int32_t* idx_p) {
  const std::int32_t order = *n;
  const std::int32_t unit = 1;
  const std::int32_t end_of_list = order + 1;
  e_izero(n, list + 1, &unit);
  std::int32_t* row = idx_p;
  for (std::int32_t i = 1; i <= order; ++i) {
    list[i] = own_row;
    std::int64_t count = 0;
    std::int32_t lowest = end_of_list;
    std::int32_t highest = 0;
    for (std::int64_t q = ptr_t[i - 1]; q < ptr_t[i]; ++q) {
      const std::int32_t k = idx_t[q];
      for (std::int64_t p = ptr_a[k - 1]; p < ptr_a[k]; ++p) {
        const std::int32_t j = idx_a[p];
        if (list[j] == 0) {
          list[j] = in_row;
          row[count++] = j;
          lowest = std::min(lowest, j);
          highest = std::max(highest, j);
        }
      }
    }
    order_row(row, count, lowest, highest, list);
    list[0] = lowest;
    list[i] = 0;
    row += count;
  }
}
