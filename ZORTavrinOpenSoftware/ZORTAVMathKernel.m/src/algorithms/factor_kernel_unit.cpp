// SPDX-License-Identifier: MIT
// Gathers the inner loops of the factorizations into this level's table.
#include "dispatch/kernel_unit.h"
// the inner loops, each beside its routine
#include "algorithms/easlff_nt_kernel.h"
#include "algorithms/eaxfch2_kernel.h"
#include "algorithms/factor_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
const FactorKernelTable factor_kernel_table{
    .factor_rows = factor_rows,
    .eliminate_front = eliminate_front,
};
}  // namespace zortav::ZORTAV_LEVEL
