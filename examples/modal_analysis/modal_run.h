// SPDX-License-Identifier: MIT
#pragma once

#include "options.h"

namespace modal {

// The lowest modes of free vibration, K·x = λ·M·x: a whole analysis as a client of the library. Returns the exit
// status.
int run_modal_analysis(const Options& options);

}  // namespace modal
