// SPDX-License-Identifier: MIT
// Gathers the packed triangular solves into this level's table.
#include "dispatch/kernel_unit.h"
// the inner loops, each beside its routine
#include "vector_kernels/packed_solves/dpptrs_2_kernel.h"
#include "vector_kernels/packed_solves/e_dtpsv_kernel.h"
#include "vector_kernels/packed_solves/e_dtpsv_transposed_kernel.h"
#include "vector_kernels/packed_solves/packed_solve_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
const PackedSolveKernelTable packed_solve_kernel_table{
    .upper = solve_upper,
    .lower = solve_lower,
    .upper_transposed = solve_upper_transposed,
    .lower_transposed = solve_lower_transposed,
    .cholesky = solve_cholesky,
};
}  // namespace zortav::ZORTAV_LEVEL
