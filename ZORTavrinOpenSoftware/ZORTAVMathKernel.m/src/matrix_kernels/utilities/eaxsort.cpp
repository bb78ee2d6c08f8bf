// SPDX-License-Identifier: MIT
// Sorts records of `width` integers by their key-th one: quicksort without recursion, the larger part always put off
// (C. A. R. Hoare, "Quicksort", The Computer Journal 5 (1962); R. Sedgewick, "Implementing quicksort programs",
// CACM 21 (1978)).
//
// The sort is not stable: where keys are equal, the rule for the pivot and the walk of the partition decide which
// record comes first, and callers see that. Both are fixed.
#include <cstdint>

#include "ZORTAVMatrixUtilities.h"
#include "matrix_kernels/utilities/record_sort.h"

void eaxsort(int32_t* a, const int32_t* width, const int32_t* count, const int32_t* key, int32_t* work) {
  using namespace zortav;
  switch (*width) {
    case 1:
      return RecordSort<1>(a, 1, *key, work).sort(*count);
    case 2:
      return RecordSort<2>(a, 2, *key, work).sort(*count);
    case 3:
      return RecordSort<3>(a, 3, *key, work).sort(*count);
    case 4:
      return RecordSort<4>(a, 4, *key, work).sort(*count);
    default:
      return RecordSort<0>(a, *width, *key, work).sort(*count);
  }
}
