// SPDX-License-Identifier: MIT
// Gathers the inner loops of the symbolic product into this level's table.
#include "dispatch/kernel_unit.h"
// the inner loops
#include "matrix_kernels/pattern_kernel_table.h"
#include "matrix_kernels/pattern_rows_kernel.h"

namespace zortav::ZORTAV_LEVEL {
const PatternKernelTable pattern_kernel_table{
    .count_rows = count_rows,
    .fill_rows = fill_rows,
};
}  // namespace zortav::ZORTAV_LEVEL
