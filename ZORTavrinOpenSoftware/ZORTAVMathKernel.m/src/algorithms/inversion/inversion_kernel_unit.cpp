// SPDX-License-Identifier: MIT
// Gathers the inversion by elimination into this level's table.
#include "dispatch/kernel_unit.h"
// the inner loops, each beside its routine
#include "algorithms/inversion/eaxinv_general_kernel.h"
#include "algorithms/inversion/eaxinv_symmetric_kernel.h"
#include "algorithms/inversion/inversion_kernel_table.h"

namespace zortav::ZORTAV_LEVEL {
const InversionKernelTable inversion_kernel_table{
    .invert_general = invert_general,
    .invert_symmetric = invert_symmetric,
};
}  // namespace zortav::ZORTAV_LEVEL
