// SPDX-License-Identifier: MIT
// The inversion by elimination at each instruction-set level.
#pragma once

#include <cstdint>

#include "dispatch/instruction_set.h"

namespace zortav {

struct InversionKernelTable {
  // With exchanges of columns; ipiv has room for n integers.
  void (*invert_general)(std::int64_t n, std::int64_t lda, double* a, std::int32_t* ipiv);
  // Without exchanges. False when a tested pivot was refused; what the steps before it did stands.
  bool (*invert_symmetric)(std::int64_t n, std::int64_t lda, double* a, bool tested);
};

namespace sse4 {
extern const InversionKernelTable inversion_kernel_table;
}
namespace avx2 {
extern const InversionKernelTable inversion_kernel_table;
}
namespace avx512 {
extern const InversionKernelTable inversion_kernel_table;
}

inline const InversionKernelTable& inversion_kernels() noexcept {
  static constexpr TablePerLevel<InversionKernelTable> tables{
      {&sse4::inversion_kernel_table, &avx2::inversion_kernel_table, &avx512::inversion_kernel_table}};
  return tables.active();
}

}  // namespace zortav
