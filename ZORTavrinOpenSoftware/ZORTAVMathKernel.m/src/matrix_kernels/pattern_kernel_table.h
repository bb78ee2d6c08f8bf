// SPDX-License-Identifier: MIT
// The symbolic product Aᵀ·A at each instruction-set level, for the rows that fit a sorting network.
#pragma once

#include <cstdint>

#include "dispatch/instruction_set.h"

namespace zortav {

// A and Aᵀ as eaupnn takes and leaves them: positions from 0, indices from 1.
struct PatternPair {
  const std::int32_t* ptr_a;
  const std::int32_t* idx_a;
  const std::int32_t* ptr_t;
  const std::int32_t* idx_t;
};

// A vector that is stored at the end of a row reaches at most this far beyond it.
inline constexpr std::int64_t pattern_overrun = 9;

struct PatternKernelTable {
  // end_of[k+1] := end_of[k] + the length of row from+k of the product, from+k = from, from+1, ..., end-1. Returns the
  // first row that does not fit, `end` when all did.
  std::int32_t (*count_rows)(const PatternPair& a, std::int32_t from, std::int32_t end, std::int32_t* end_of);
  // Writes the rows from..end-1 one after the other from *row on, each ascending, and up to pattern_overrun numbers
  // behind them; *row moves on behind the last one. Returns as above.
  std::int32_t (*fill_rows)(const PatternPair& a, std::int32_t from, std::int32_t end, std::int32_t** row);
};

namespace sse4 {
extern const PatternKernelTable pattern_kernel_table;
}
namespace avx2 {
extern const PatternKernelTable pattern_kernel_table;
}
namespace avx512 {
extern const PatternKernelTable pattern_kernel_table;
}

inline const PatternKernelTable& pattern_kernels() noexcept {
  static constexpr TablePerLevel<PatternKernelTable> tables{
      {&sse4::pattern_kernel_table, &avx2::pattern_kernel_table, &avx512::pattern_kernel_table}};
  return tables.active();
}

}  // namespace zortav
