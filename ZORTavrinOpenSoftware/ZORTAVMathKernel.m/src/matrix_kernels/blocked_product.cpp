// SPDX-License-Identifier: MIT
// C := alpha·op(A)·op(B) + beta·C by blocks, after K. Goto and R. A. van de Geijn, "Anatomy of high-performance matrix
// multiplication", ACM TOMS 34 (2008): a block of op(A) is packed so that it stays in the second-level cache while the
// columns of B stream past. Here both operands run along the depth, so B needs no packing unless it is transposed.
#include "matrix_kernels/blocked_product.h"

#include <algorithm>
#include <cstdint>

#include "matrix_kernels/product_kernel_table.h"

namespace zortav {
namespace {

constexpr std::ptrdiff_t cache_line = 64;

// A buffer on the stack, aligned by hand: not every platform's compilers align a thread's stack frames beyond 16 bytes.
template <std::ptrdiff_t size>
class AlignedBuffer {
 public:
  double* data() {
    const auto address = reinterpret_cast<std::uintptr_t>(storage_);
    const std::uintptr_t to_line = (cache_line - address % cache_line) % cache_line;
    return storage_ + to_line / sizeof(double);
  }

 private:
  double storage_[size + cache_line / static_cast<std::ptrdiff_t>(sizeof(double))];
};

using RowBlockBuffer = AlignedBuffer<product_row_block * product_run>;
using ColumnBlockBuffer = AlignedBuffer<product_column_block_transposed * product_run>;

// One column block of C and one depth block: the unit between two joins of the team.
struct Pass {
  const Product& product;
  const ProductKernelTable& kernels;
  std::ptrdiff_t j0, columns;
  std::ptrdiff_t l0, depth;
  double alpha_in_p;
  double beta;
  const double* b;
  std::ptrdiff_t ldb;
};

std::ptrdiff_t row_blocks(const Pass& pass) {
  return (pass.product.m + product_row_block - 1) / product_row_block;
}

// What packing the row block reads of A; nothing beyond the last one.
UpcomingColumns columns_of_a(const Pass& pass, std::ptrdiff_t block) {
  if (block >= row_blocks(pass)) {
    return {};
  }
  const Product& x = pass.product;
  const std::ptrdiff_t i0 = block * product_row_block;
  const std::ptrdiff_t rows = std::min(x.m - i0, product_row_block);
  return x.transpose_a ? UpcomingColumns{x.a + pass.l0 + i0 * x.lda, x.lda, rows, pass.depth}
                       : UpcomingColumns{x.a + i0 + pass.l0 * x.lda, x.lda, pass.depth, rows};
}

// Rows that are gathered only once come straight from A: packed first, they would be copied twice.
bool skips_packing(const Pass& pass) {
  return pass.columns <= product_chunk_columns || pass.depth < pass.kernels.shallow_depth;
}

void run_row_block(const Pass& pass, std::ptrdiff_t block, double* p) {
  const Product& x = pass.product;
  const std::ptrdiff_t i0 = block * product_row_block;
  const std::ptrdiff_t rows = std::min(x.m - i0, product_row_block);
  RowSource a{columns_of_a(pass, block).first, x.lda, x.transpose_a, pass.alpha_in_p};
  if (!skips_packing(pass)) {
    const auto pack = x.transpose_a ? pass.kernels.pack_along : pass.kernels.pack_across;
    pack(rows, pass.depth, a.factor, a.first, a.stride, p);
    a = {p, product_run, true, 1.0};
  }
  pass.kernels.update_row_block({.rows = rows,
                                 .columns = pass.columns,
                                 .depth = pass.depth,
                                 .a = a,
                                 .room = p,
                                 .b = pass.b,
                                 .ldb = pass.ldb,
                                 .beta = pass.beta,
                                 .c = x.c + i0 + pass.j0 * x.ldc,
                                 .ldc = x.ldc,
                                 .upcoming = columns_of_a(pass, block + 1)});
}

// The two ways to run a pass stay two frames, so that a thread never carries two row-block buffers.
[[gnu::noinline]] void run_pass_alone(const Pass& pass) {
  RowBlockBuffer buffer;
  for (std::ptrdiff_t block = 0; block < row_blocks(pass); ++block) {
    run_row_block(pass, block, buffer.data());
  }
}

[[gnu::noinline]] void run_pass_on_team(const Pass& pass) {
  const std::ptrdiff_t blocks = row_blocks(pass);
#pragma omp parallel
  {
    RowBlockBuffer buffer;
    double* const p = buffer.data();
#pragma omp for schedule(static)
    for (std::ptrdiff_t block = 0; block < blocks; ++block) {
      run_row_block(pass, block, p);
    }
  }
}

void run_pass(const Pass& pass, Team team) {
  if (team == Team::caller_alone || row_blocks(pass) == 1) {
    run_pass_alone(pass);
  } else {
    run_pass_on_team(pass);
  }
}

template <class PerPass>
void for_each_pass(const Product& x, std::ptrdiff_t column_block, PerPass&& per_pass) {
  for (std::ptrdiff_t j0 = 0; j0 < x.n; j0 += column_block) {
    const std::ptrdiff_t columns = std::min(x.n - j0, column_block);
    for (std::ptrdiff_t l0 = 0; l0 < x.k; l0 += product_depth_block) {
      const std::ptrdiff_t depth = std::min(x.k - l0, product_depth_block);
      per_pass(j0, columns, l0, depth, l0 == 0 ? x.beta : 1.0);
    }
  }
}

void product_b_in_place(const Product& x, const ProductKernelTable& kernels, Team team) {
  for_each_pass(x, product_column_block,
                [&](std::ptrdiff_t j0, std::ptrdiff_t columns, std::ptrdiff_t l0, std::ptrdiff_t depth, double beta) {
                  const double* const b = x.b + l0 + j0 * x.ldb;
                  run_pass({x, kernels, j0, columns, l0, depth, x.alpha, beta, b, x.ldb}, team);
                });
}

void product_b_packed(const Product& x, const ProductKernelTable& kernels, Team team) {
  ColumnBlockBuffer buffer;
  double* const q = buffer.data();
  for_each_pass(x, product_column_block_transposed,
                [&](std::ptrdiff_t j0, std::ptrdiff_t columns, std::ptrdiff_t l0, std::ptrdiff_t depth, double beta) {
                  kernels.pack_across(columns, depth, x.alpha, x.b + j0 + l0 * x.ldb, x.ldb, q);
                  run_pass({x, kernels, j0, columns, l0, depth, 1.0, beta, q, product_run}, team);
                });
}

}  // namespace

void large_product(const Product& product, const ProductKernelTable& kernels, Team team) {
  if (product.transpose_b) {
    product_b_packed(product, kernels, team);
  } else {
    product_b_in_place(product, kernels, team);
  }
}

}  // namespace zortav
