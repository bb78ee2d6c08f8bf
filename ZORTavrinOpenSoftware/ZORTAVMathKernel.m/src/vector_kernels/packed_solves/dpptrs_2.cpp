// SPDX-License-Identifier: MIT
// Solves Uᵀ·U·X = B in place, U upper and packed by columns: Uᵀ·Y = B by rows of Uᵀ, then U·X = Y by columns of U
// (G. H. Golub, C. F. Van Loan, Matrix Computations, 4th ed., section 3.1).
//
//   y(j) := (b(j) - U(1,j)·y(1) - U(2,j)·y(2) - ... - U(j-1,j)·y(j-1)) / U(j,j),   j = 1..n;
//   x(j) := y(j) / U(j,j), then y(i) := y(i) - x(j)·U(i,j) for i < j,              j = n..1.
//
// This is eacort's order too: a right-hand side has the same solution, to the last bit, alone and among others.
#include <cstdint>

#include "ZORTAVMatrixUtilities.h"
#include "ZORTAVPackedSolves.h"
#include "vector_kernels/packed_solves/packed_solve_kernel_table.h"

void dpptrs_2(const char* uplo, const int32_t* n, const int32_t* nrhs, const double* ap, double* b, const int32_t* ldb,
              int32_t* info, int64_t /*uplo_length*/) {
  if (*uplo != 'U' && *uplo != 'u') {
    *info = 1;
    return;
  }
  if (*nrhs == 1) {
    // Not read there; its product may be beyond 32 bits.
    const auto elements = static_cast<int32_t>(static_cast<std::int64_t>(*n) * (*n + std::int64_t{1}) / 2);
    eacort(&elements, n, ap, b);
    return;
  }
  if (*n < 1 || *nrhs < 1) {
    return;
  }
  zortav::packed_solve_kernels().cholesky(static_cast<std::size_t>(*n), static_cast<std::size_t>(*nrhs), ap, b, *ldb);
}
