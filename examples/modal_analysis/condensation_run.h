// SPDX-License-Identifier: MIT
#pragma once

#include "options.h"

namespace modal {

// The stiffness condensed to the unknowns of options.condense. Returns the exit status.
int run_condensation(const Options& options);

}  // namespace modal
