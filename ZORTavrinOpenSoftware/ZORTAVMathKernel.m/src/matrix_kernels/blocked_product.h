// SPDX-License-Identifier: MIT
// The library's one matrix-matrix product, behind eagemm's own route and behind ZORMatrixMult.
#pragma once

#include <cstddef>

#include "matrix_kernels/product_kernel_table.h"

namespace zortav {

// C := alpha·op(A)·op(B) + beta·C, column-major; op(X) = X or Xᵀ.
struct Product {
  bool transpose_a;
  bool transpose_b;
  std::ptrdiff_t m, n, k;  // all at least 1
  double alpha;
  const double* a;
  std::ptrdiff_t lda;
  const double* b;
  std::ptrdiff_t ldb;
  double beta;  // 0: old contents of C do not reach the result
  double* c;
  std::ptrdiff_t ldc;
};

enum class Team { caller_alone, threads };

// Each element of C starts from beta·C and adds its products one by one in increasing depth; the result does not depend
// on the team.
// Stack: 158,784 bytes for the packed rows and at most 35,968 for the tile at hand on every thread; when B is
// transposed, 190,528 more on the calling one.
void large_product(const Product& product, const ProductKernelTable& kernels, Team team);

// Inline: a small product takes no longer than a few stores and loads of its description.
inline void blocked_product(const Product& x, Team team) {
  const ProductKernelTable& kernels = product_kernels();
  // One row block, one chunk of columns of B and one depth block: nothing to pack, to divide or to fetch ahead.
  if (!x.transpose_b && x.m <= product_row_block && x.n <= product_chunk_columns && x.k <= product_depth_block) {
    kernels.update_row_block({.rows = x.m,
                              .columns = x.n,
                              .depth = x.k,
                              .a = {x.a, x.lda, x.transpose_a, x.alpha},
                              .room = nullptr,
                              .b = x.b,
                              .ldb = x.ldb,
                              .beta = x.beta,
                              .c = x.c,
                              .ldc = x.ldc,
                              .upcoming = {}});
  } else {
    large_product(x, kernels, team);
  }
}

}  // namespace zortav
