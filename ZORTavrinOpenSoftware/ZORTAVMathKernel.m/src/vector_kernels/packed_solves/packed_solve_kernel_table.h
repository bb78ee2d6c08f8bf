// SPDX-License-Identifier: MIT
// The packed triangular solves at each instruction-set level. Every element of a solution goes through the same
// operations in the same order whichever of these routines computes it (e_dtpsv.cpp states the order).
#pragma once

#include <cstddef>

#include "dispatch/instruction_set.h"

namespace zortav {

// What a column-oriented solve does with an element of x that is zero when its turn comes.
enum class ZeroElement { skipped, used };

enum class Diagonal { given, unit };

struct PackedSolveKernelTable {
  // x := U⁻¹·x, U upper
  void (*upper)(std::size_t n, const double* ap, Diagonal diagonal, ZeroElement zero, double* x);
  // x := L⁻¹·x, L lower
  void (*lower)(std::size_t n, const double* ap, Diagonal diagonal, ZeroElement zero, double* x);
  // x := U⁻ᵀ·x, U upper
  void (*upper_transposed)(std::size_t n, const double* ap, Diagonal diagonal, double* x);
  // x := L⁻ᵀ·x, L lower
  void (*lower_transposed)(std::size_t n, const double* ap, Diagonal diagonal, double* x);
  // B := (Uᵀ·U)⁻¹·B for the nrhs columns of B, which stand ldb elements apart
  void (*cholesky)(std::size_t n, std::size_t nrhs, const double* ap, double* b, std::ptrdiff_t ldb);
};

namespace sse4 {
extern const PackedSolveKernelTable packed_solve_kernel_table;
}
namespace avx2 {
extern const PackedSolveKernelTable packed_solve_kernel_table;
}
namespace avx512 {
extern const PackedSolveKernelTable packed_solve_kernel_table;
}

inline const PackedSolveKernelTable& packed_solve_kernels() noexcept {
  static constexpr TablePerLevel<PackedSolveKernelTable> tables{
      {&sse4::packed_solve_kernel_table, &avx2::packed_solve_kernel_table, &avx512::packed_solve_kernel_table}};
  return tables.active();
}

}  // namespace zortav
