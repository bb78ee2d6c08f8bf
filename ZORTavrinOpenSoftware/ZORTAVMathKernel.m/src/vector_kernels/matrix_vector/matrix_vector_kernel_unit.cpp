// SPDX-License-Identifier: MIT
// Gathers the inner loops of the matrix-vector product into this level's table.
#include "dispatch/kernel_unit.h"
// the inner loops
#include "vector_kernels/matrix_vector/columns_kernel.h"
#include "vector_kernels/matrix_vector/group_dots_kernel.h"
#include "vector_kernels/matrix_vector/matrix_vector_kernel_table.h"
#include "vector_kernels/matrix_vector/row_pairs_kernel.h"

namespace zortav::ZORTAV_LEVEL {
const MatrixVectorKernelTable matrix_vector_kernel_table{
    .add_columns = add_columns,
    .add_column_pairs = add_column_pairs,
    .add_row_pairs = add_row_pairs,
    .group_dots = group_dots,
};
}  // namespace zortav::ZORTAV_LEVEL
