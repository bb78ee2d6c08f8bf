// SPDX-License-Identifier: MIT
#pragma once

#include "options.h"
#include "parallel/ranks.h"

namespace component {

// Component mode synthesis over all ranks. Returns this rank's exit status; throws Stopped after a rank
// has said what is wrong.
int run_component_modes(Ranks& ranks, const Options& options);

}  // namespace component
