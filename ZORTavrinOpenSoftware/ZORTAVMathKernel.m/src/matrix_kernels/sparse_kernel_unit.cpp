// SPDX-License-Identifier: MIT
// Gathers the inner loops of the sparse product into this level's table.
#include "dispatch/kernel_unit.h"
// the inner loops, beside their routine
#include "matrix_kernels/eaxmvm_kernel.h"
#include "matrix_kernels/sparse_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
const SparseKernelTable sparse_kernel_table{
    .diagonal = diagonal_product,
    .lower = {sweep<false, PlainGroup<1>>, sweep<false, TiledGroup<2>>, sweep<false, PlainGroup<3>>,
              sweep<false, TiledGroup<4>>},
    .lower_eight = sweep<false, TiledGroup<8>>,
    .symmetric = {sweep<true, PlainGroup<1>>, sweep<true, TiledGroup<2>>, sweep<true, PlainGroup<3>>,
                  sweep<true, TiledGroup<4>>},
    .symmetric_eight = sweep<true, TiledGroup<8>>,
};
}  // namespace zortav::ZORTAV_LEVEL
