// SPDX-License-Identifier: MIT
// Gathers the inner loops of the vector kernels into this level's table.
#include "dispatch/kernel_unit.h"
// the inner loops, each beside its routine
#include "vector_kernels/level1/damax_kernel.h"
#include "vector_kernels/level1/e_dasum_kernel.h"
#include "vector_kernels/level1/e_daxpy_kernel.h"
#include "vector_kernels/level1/e_dscal_kernel.h"
#include "vector_kernels/level1/e_dswap_kernel.h"
#include "vector_kernels/level1/e_idamax_kernel.h"
#include "vector_kernels/level1/vector_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
const VectorKernelTable vector_kernel_table{
    .dscal = dscal,
    .daxpy = daxpy,
    .dswap = dswap,
    .dasum_groups = dasum_groups,
    .max_magnitude = max_magnitude,
    .idamax = idamax,
};
}  // namespace zortav::ZORTAV_LEVEL
