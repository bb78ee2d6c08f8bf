// SPDX-License-Identifier: MIT
// Gathers the inner loops of the eigen-solver into this level's table.
#include "dispatch/kernel_unit.h"
// the inner loops, each beside its routine
#include "algorithms/eaxeql_kernel.h"
#include "algorithms/eaxeql_sweep_kernel.h"
#include "algorithms/eaxetr_kernel.h"
#include "algorithms/eaxevp_kernel.h"
#include "algorithms/eigen_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
const EigenKernelTable eigen_kernel_table{
    .dot = dot,
    .update = update,
    .multiply = multiply,
    .update_and_multiply = update_and_multiply,
    .sweep = sweep,
    .rotate = rotate,
    .reflect = reflect,
};
}  // namespace zortav::ZORTAV_LEVEL
