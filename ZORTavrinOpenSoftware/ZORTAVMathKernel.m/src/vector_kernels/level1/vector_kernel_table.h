// SPDX-License-Identifier: MIT
// The inner loops of the vector kernels at each instruction-set level, all for contiguous vectors of n elements.
#pragma once

#include <cstddef>

#include "dispatch/instruction_set.h"

namespace zortav {

struct VectorKernelTable {
  // x(i) := alpha·x(i)
  void (*dscal)(std::size_t n, double alpha, double* x);
  // y(i) := y(i) + alpha·x(i)
  void (*daxpy)(std::size_t n, double alpha, const double* x, double* y);
  // x(i) :=: y(i)
  void (*dswap)(std::size_t n, double* x, double* y);
  // first + the sum of |x(i)| over 8·groups elements, in the order of group_sum.h; x on an 8-byte boundary
  double (*dasum_groups)(std::size_t groups, double first, const double* x);
  // the largest |x(i)| that is not NaN, no_magnitude if there is none
  double (*max_magnitude)(std::size_t n, const double* x);
  // where the first of largest magnitude stands, from 0; NaNs passed over, 0 if there is nothing else
  std::size_t (*idamax)(std::size_t n, const double* x);
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
