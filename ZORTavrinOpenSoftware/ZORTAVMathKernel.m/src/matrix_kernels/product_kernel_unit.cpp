// SPDX-License-Identifier: MIT
// Gathers the inner loops of the matrix-matrix product into this level's table.
#include "dispatch/kernel_unit.h"
// the inner loops
#include "matrix_kernels/product_kernel.h"
#include "matrix_kernels/product_kernel_table.h"
#include "matrix_kernels/product_pack_kernel.h"

namespace zortav::ZORTAV_LEVEL {
extern const ProductKernelTable product_kernel_table;
const ProductKernelTable product_kernel_table{
    .shallow_depth = shallow_depth,
    .pack_across = pack_across,
    .pack_along = pack_along,
    .update_row_block = update_row_block,
};
}  // namespace zortav::ZORTAV_LEVEL
