// SPDX-License-Identifier: MIT
// The inner loops of the matrix-matrix product at each instruction-set level, and the sizes they agree on.
#pragma once

#include <cstddef>

#include "dispatch/instruction_set.h"

namespace zortav {

inline constexpr std::ptrdiff_t product_row_block = 80;
inline constexpr std::ptrdiff_t product_depth_block = 248;
inline constexpr std::ptrdiff_t product_column_block = 1024;
inline constexpr std::ptrdiff_t product_column_block_transposed = 96;

// Columns of B that stay in the second-level cache while the rows of a block pass.
inline constexpr std::ptrdiff_t product_chunk_columns = 192;

// Both packing buffers hold runs of up to product_depth_block values.
inline constexpr std::ptrdiff_t product_run = product_depth_block;

// Rows of op(A), times a factor: where A stands or packed.
struct RowSource {
  const double* first;
  std::ptrdiff_t stride;
  bool along_depth;  // element (i, l) at l + i·stride, as in a packed row block; else at i + l·stride
  double factor;

  RowSource from(std::ptrdiff_t row) const {
    return {first + (along_depth ? row * stride : row), stride, along_depth, factor};
  }
};

// Columns of a matrix that are packed next. They are fetched into the second-level cache while the block at hand is
// computed: each pass reads A anew, and left to the packing it would come at the latency of memory.
struct UpcomingColumns {
  const double* first = nullptr;
  std::ptrdiff_t stride = 0;
  std::ptrdiff_t columns = 0;
  std::ptrdiff_t length = 0;
};

// C(i, j) := beta·C(i, j) + Σ a(i, l)·B(l, j) over l, for one row block and the columns of one pass.
struct RowBlockUpdate {
  std::ptrdiff_t rows;     // 1..80
  std::ptrdiff_t columns;  // 1..1024
  std::ptrdiff_t depth;    // 1..248
  RowSource a;
  double* room;     // for 80 × 248 turned values where the depth is shallow, a being elsewhere, or null
  const double* b;  // B(l, j) at (l-1) + ldb·(j-1); nothing beyond l = depth is read
  std::ptrdiff_t ldb;
  double beta;  // 0 starts every element at exactly 0, whatever C held
  double* c;
  std::ptrdiff_t ldc;
  UpcomingColumns upcoming;
};

struct ProductKernelTable {
  // Products of less depth are bound by C, and their rows are never packed.
  std::ptrdiff_t shallow_depth;
  // P(l, i) := alpha·A(i, l): run i gathers row i of A, `stride` apart.
  void (*pack_across)(std::ptrdiff_t runs, std::ptrdiff_t depth, double alpha, const double* a, std::ptrdiff_t stride,
                      double* p);
  // P(l, i) := alpha·A(l, i): run i is a piece of column i of A, columns `stride` apart.
  void (*pack_along)(std::ptrdiff_t runs, std::ptrdiff_t depth, double alpha, const double* a, std::ptrdiff_t stride,
                     double* p);
  void (*update_row_block)(const RowBlockUpdate& task);
};

namespace sse4 {
extern const ProductKernelTable product_kernel_table;
}
namespace avx2 {
extern const ProductKernelTable product_kernel_table;
}
namespace avx512 {
extern const ProductKernelTable product_kernel_table;
}

inline const ProductKernelTable& product_kernels() noexcept {
  static constexpr TablePerLevel<ProductKernelTable> tables{
      {&sse4::product_kernel_table, &avx2::product_kernel_table, &avx512::product_kernel_table}};
  return tables.active();
}

}  // namespace zortav
