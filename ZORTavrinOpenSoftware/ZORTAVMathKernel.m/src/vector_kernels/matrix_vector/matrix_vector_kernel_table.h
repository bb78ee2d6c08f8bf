// SPDX-License-Identifier: MIT
// The inner loops of the matrix-vector product at each instruction-set level. A is stored column by column, lda
// elements apart; every other array is contiguous. Each loop keeps the order of every single sum, so that the levels
// differ in how many sums they carry at a time and in nothing else.
#pragma once

#include <cstddef>

#include "dispatch/instruction_set.h"

namespace zortav {

// What else happens to the sum of the even columns: whether it starts at 0 here, whatever stands there, and whether it
// is added to the other one here in the end, after which what stands there is of no use.
struct SecondSum {
  bool starts = false;
  bool ends = false;
};

struct MatrixVectorKernelTable {
  // y(i) := (y(i) + a(i,1)·t(1)) + a(i,2)·t(2) + ..., i = 1..rows
  void (*add_columns)(std::size_t rows, std::size_t columns, const double* a, std::ptrdiff_t lda, const double* t,
                      double* y);
  // the same for 2·pairs columns, of which odd(i) takes the 1st, 3rd, ..., and even(i) the 2nd, 4th, ...
  void (*add_column_pairs)(std::size_t rows, std::size_t pairs, const double* a, std::ptrdiff_t lda, const double* t,
                           double* odd, double* even, SecondSum second);
  // lanes(1,j) := lanes(1,j) + a(1,j)·s(1) + a(3,j)·s(3) + ..., lanes(2,j) := lanes(2,j) + a(2,j)·s(2) + ...,
  // 2·pairs rows, j = 1..columns
  void (*add_row_pairs)(std::size_t pairs, std::size_t columns, const double* a, std::ptrdiff_t lda, const double* s,
                        double* lanes);
  // y(j) := beta·y(j) + alpha·(the sum of a(i,j)·x(i) over 4·groups rows), in the order of group_dots_kernel.h
  void (*group_dots)(std::size_t groups, std::size_t columns, double alpha, const double* a, std::ptrdiff_t lda,
                     const double* x, double beta, double* y);
};

namespace sse4 {
extern const MatrixVectorKernelTable matrix_vector_kernel_table;
}
namespace avx2 {
extern const MatrixVectorKernelTable matrix_vector_kernel_table;
}
namespace avx512 {
extern const MatrixVectorKernelTable matrix_vector_kernel_table;
}

inline const MatrixVectorKernelTable& matrix_vector_kernels() noexcept {
  static constexpr TablePerLevel<MatrixVectorKernelTable> tables{
      {&sse4::matrix_vector_kernel_table, &avx2::matrix_vector_kernel_table, &avx512::matrix_vector_kernel_table}};
  return tables.active();
}

}  // namespace zortav
