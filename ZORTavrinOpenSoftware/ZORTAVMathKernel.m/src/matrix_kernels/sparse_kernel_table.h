// SPDX-License-Identifier: MIT
// The inner loops of the sparse product at each instruction-set level.
#pragma once

#include <cstdint>

#include "dispatch/instruction_set.h"

namespace zortav {

// A sparse lower triangle by rows, the diagonal last in every row; rows and positions count from 0 here, the column
// indices from 1 as the caller stored them.
struct SparseRows {
  const std::int32_t* colidx;
  const std::int32_t* rowptr;  // rowptr[0] is never read and stands for 0
  const double* values;
  std::int64_t nrows;
};

// One sweep over the rows for a fixed number of vectors, whose columns in x and y are n apart.
using SparseSweep = void (*)(const SparseRows& a, std::int64_t n, const double* x, double* y);

struct SparseKernelTable {
  // y(i) := a(i)·x(i), i = 1..n
  void (*diagonal)(std::int64_t n, const double* a, const double* x, double* y);
  // y := L·x for 1, 2, 3 and 4 vectors, and for 8
  SparseSweep lower[4];
  SparseSweep lower_eight;
  // y := (L + Lᵀ − diag L)·x likewise. Rows 1..nrows of y need no clearing beforehand, the rows from
  // sparse_first_cleared_row(nrows) on must be 0.
  SparseSweep symmetric[4];
  SparseSweep symmetric_eight;
};

// The symmetric sweeps keep y in tiles of at most this many rows while they run; a tile that nrows cuts is cleared
// whole.
inline constexpr std::int64_t sparse_tile_rows = 8;

inline constexpr std::int64_t sparse_first_cleared_row(std::int64_t nrows) {
  return nrows - nrows % sparse_tile_rows;
}

namespace sse4 {
extern const SparseKernelTable sparse_kernel_table;
}
namespace avx2 {
extern const SparseKernelTable sparse_kernel_table;
}
namespace avx512 {
extern const SparseKernelTable sparse_kernel_table;
}

inline const SparseKernelTable& sparse_kernels() noexcept {
  static constexpr TablePerLevel<SparseKernelTable> tables{
      {&sse4::sparse_kernel_table, &avx2::sparse_kernel_table, &avx512::sparse_kernel_table}};
  return tables.active();
}

}  // namespace zortav
