// SPDX-License-Identifier: MIT
// The library's one matrix-matrix product, behind eagemm's own route and behind ZORMatrixMult.
#pragma once

#include <cstddef>

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
// Stack: 158,784 bytes for the packed rows and at most 33,280 for the tile at hand on every thread; when B is
// transposed, 190,528 more on the calling one.
void blocked_product(const Product& product, Team team);

}  // namespace zortav
