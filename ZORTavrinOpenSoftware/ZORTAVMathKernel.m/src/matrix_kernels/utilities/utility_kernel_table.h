// SPDX-License-Identifier: MIT
// The inner loops of the matrix utilities at each instruction-set level.
#pragma once

#include <cstddef>

#include "dispatch/instruction_set.h"

namespace zortav {

struct UtilityKernelTable {
  // Σ x(i)·y(i) over contiguous vectors
  double (*scalar_product)(std::size_t n, const double* x, const double* y);
};

namespace sse4 {
extern const UtilityKernelTable utility_kernel_table;
}
namespace avx2 {
extern const UtilityKernelTable utility_kernel_table;
}
namespace avx512 {
extern const UtilityKernelTable utility_kernel_table;
}

inline const UtilityKernelTable& utility_kernels() noexcept {
  static constexpr TablePerLevel<UtilityKernelTable> tables{
      {&sse4::utility_kernel_table, &avx2::utility_kernel_table, &avx512::utility_kernel_table}};
  return tables.active();
}

}  // namespace zortav
