// SPDX-License-Identifier: MIT
// The inner loops of the vector kernels at each instruction-set level.
#pragma once

#include <cstddef>

#include "dispatch/instruction_set.h"

namespace zortav {

struct VectorKernelTable {
  // x(i) := alpha·x(i), contiguous
  void (*dscal)(std::size_t n, double alpha, double* x);
};

namespace sse4 {
extern const VectorKernelTable vector_kernel_table;
}
namespace avx2 {
extern const VectorKernelTable vector_kernel_table;
}
namespace avx512 {
extern const VectorKernelTable vector_kernel_table;
}

inline const VectorKernelTable& vector_kernels() noexcept {
  static constexpr TablePerLevel<VectorKernelTable> tables{
      {&sse4::vector_kernel_table, &avx2::vector_kernel_table, &avx512::vector_kernel_table}};
  return tables.active();
}

}  // namespace zortav
