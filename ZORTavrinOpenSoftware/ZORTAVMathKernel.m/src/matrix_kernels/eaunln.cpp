// SPDX-License-Identifier: MIT
// The column indices of P, the pattern of Aᵀ·A without its diagonal, row after row and ascending in each.
//
// The work array has the form of a linked list in ascending order: list(1) its head, list(j+1) the successor of j, n+1
// its end. Inserting in order costs the square of a row's length. Here short rows are sorted whole, equal columns left
// out (pattern_rows_kernel.h). The columns of the others are gathered where they will stand in the result, list(j+1)
// saying that j is there, and put in order at the end: by sorting, or, when the row fills much of the range that it
// spans, by walking through list over that range. What remains in list is the same: the slots cleared, the head on the
// first column of the last row.
#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "ZORTAVSparsePatterns.h"
#include "ZORTAVVectorKernels.h"
#include "matrix_kernels/pattern_kernel_table.h"

namespace zortav {
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

// Writes row i and returns its end.
std::int32_t* marked_row(const PatternPair& a, std::int32_t i, std::int32_t* list, std::int32_t* row) {
  list[i] = own_row;
  std::int64_t count = 0;
  std::int32_t lowest = std::numeric_limits<std::int32_t>::max();
  std::int32_t highest = 0;
  for (std::int64_t q = a.ptr_t[i - 1]; q < a.ptr_t[i]; ++q) {
    const std::int32_t k = a.idx_t[q];
    for (std::int64_t p = a.ptr_a[k - 1]; p < a.ptr_a[k]; ++p) {
      const std::int32_t j = a.idx_a[p];
      if (list[j] == 0) {
        list[j] = in_row;
        row[count++] = j;
        lowest = std::min(lowest, j);
        highest = std::max(highest, j);
      }
    }
  }
  order_row(row, count, lowest, highest, list);
  list[i] = 0;
  return row + count;
}

// The first of the last rows, which hold too few columns to be overrun by the rows before them.
std::int32_t first_careful_row(const PatternPair& a, std::int32_t order) {
  std::int32_t i = order + 1;
  for (std::int64_t columns = 0; columns < pattern_overrun && i > 1;) {
    --i;
    std::array<std::int32_t, 2> end_of{};
    if (pattern_kernels().count_rows(a, i, i + 1, end_of.data()) > i) {
      columns += end_of[1];
    }
  }
  return i;
}

}  // namespace
}  // namespace zortav

void eaunln(const int32_t* n, const int32_t* /*reserved1*/, const int32_t* /*reserved2*/, const int32_t* ptr_a,
            const int32_t* idx_a, const int32_t* ptr_t, const int32_t* idx_t, int32_t* list, int32_t* idx_p) {
  using namespace zortav;
  const std::int32_t order = *n;
  const std::int32_t unit = 1;
  e_izero(n, list + 1, &unit);
  const PatternPair a{ptr_a, idx_a, ptr_t, idx_t};
  const std::int32_t careful = first_careful_row(a, order);
  std::int32_t* row = idx_p;
  std::int32_t* last_row = row;
  for (std::int32_t i = 1; i <= order; ++i) {
    if (i < careful) {
      i = pattern_kernels().fill_rows(a, i, careful, &row);
    }
    if (i <= order) {
      last_row = row;
      row = marked_row(a, i, list, row);
    }
  }
  list[0] = row == last_row ? order + 1 : *last_row;
}
