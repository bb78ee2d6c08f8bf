// SPDX-License-Identifier: MIT
// Solves L·Lᵀ·x = b in place, L packed by rows; the same memory is U = Lᵀ packed by columns, and the solves are Uᵀ·y =
// b and U·x = y. dpptrs_2.cpp states the order of the operations.
#include <cstdint>

#include "ZORTAVMatrixUtilities.h"
#include "vector_kernels/packed_solves/packed_solve_kernel_table.h"

void eacort(const int32_t* /*reserved*/, const int32_t* n, const double* f, double* b) {
  using namespace zortav;
  if (*n < 1) {
    return;
  }
  const auto order = static_cast<std::size_t>(*n);
  const PackedSolveKernelTable& solve = packed_solve_kernels();
  solve.upper_transposed(order, f, Diagonal::given, b);
  solve.upper(order, f, Diagonal::given, ZeroElement::used, b);
}
