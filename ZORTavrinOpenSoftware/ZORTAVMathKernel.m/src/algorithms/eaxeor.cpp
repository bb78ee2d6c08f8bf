// SPDX-License-Identifier: MIT
// Selection sort of the eigenpairs: ascending, or descending by absolute value. Of equals the earlier one stays.
// One exchange a place at most, so that no column of V moves more often than it must.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "ZORTAVEigenSolver.h"

namespace {
constexpr int32_t ascending = 1;
}

void eaxeor(const int32_t* ord, const int32_t* n, double* d, double* v) {
  const std::int64_t order = *n;
  const bool by_value = *ord == ascending;
  for (std::int64_t i = 0; i + 1 < order; ++i) {
    std::int64_t chosen = i;
    for (std::int64_t k = i + 1; k < order; ++k) {
      // Strictly before the present choice; a NaN is before nothing, and nothing is before it.
      if (by_value ? d[k] < d[chosen] : std::fabs(d[k]) > std::fabs(d[chosen])) {
        chosen = k;
      }
    }
    if (chosen != i) {
      std::swap(d[i], d[chosen]);
      std::swap_ranges(v + i * order, v + (i + 1) * order, v + chosen * order);
    }
  }
}
