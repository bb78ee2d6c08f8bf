// SPDX-License-Identifier: MIT
// Gathers the inner loops of the matrix utilities into this level's table.
#include "dispatch/kernel_unit.h"
// the inner loops, each beside its routine
#include "matrix_kernels/utilities/eaxscl_kernel.h"
#include "matrix_kernels/utilities/utility_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
const UtilityKernelTable utility_kernel_table{
    .scalar_product = scalar_product,
};
}  // namespace zortav::ZORTAV_LEVEL
