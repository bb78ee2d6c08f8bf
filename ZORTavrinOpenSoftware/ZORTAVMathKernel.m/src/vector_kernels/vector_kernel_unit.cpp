// SPDX-License-Identifier: MIT
// Gathers the inner loops of the vector kernels into this level's table.
#include "dispatch/kernel_unit.h"
// the inner loops, each beside its routine
#include "vector_kernels/e_dscal_kernel.h"
#include "vector_kernels/vector_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
extern const VectorKernelTable vector_kernel_table;
const VectorKernelTable vector_kernel_table{
    .dscal = dscal,
};
}  // namespace zortav::ZORTAV_LEVEL
