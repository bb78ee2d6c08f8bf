// SPDX-License-Identifier: MIT
// The inner loops of the factorizations at each instruction-set level.
#pragma once

#include <cstdint>

#include "dispatch/instruction_set.h"

namespace zortav {

// What decides on the pivots of a front, and what is counted on the way.
struct PivotTest {
  const double* initial_diagonal;  // of equation 1; equation `equation` is compared with its own
  double smallest;                 // a pivot must not be smaller in magnitude
  double smallest_ratio;           // pivot / initial diagonal must be larger
  double ratio_minimum;
  std::int32_t equation;
  std::int32_t accepted;
  std::int32_t status;
};

struct FactorKernelTable {
  // Rows first..last of L·Lᵀ over the triangle `a` packed by rows. Returns 0, or the row whose pivot was not above
  // tol, with that pivot in `refused`.
  std::int64_t (*factor_rows)(std::int64_t first, std::int64_t last, double tol, double* a, double* refused);

  // Eliminates the first m equations of the front of order n. False when a pivot was refused; then the positions
  // after it, up to clear_to (counted from 1), have been cleared.
  bool (*eliminate_front)(std::int64_t n, std::int64_t m, double* a, std::int64_t clear_to, PivotTest& test);
};

namespace sse4 {
extern const FactorKernelTable factor_kernel_table;
}
namespace avx2 {
extern const FactorKernelTable factor_kernel_table;
}
namespace avx512 {
extern const FactorKernelTable factor_kernel_table;
}

inline const FactorKernelTable& factor_kernels() noexcept {
  static constexpr TablePerLevel<FactorKernelTable> tables{
      {&sse4::factor_kernel_table, &avx2::factor_kernel_table, &avx512::factor_kernel_table}};
  return tables.active();
}

}  // namespace zortav
