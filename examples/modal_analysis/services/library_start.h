// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

namespace modal {

// The library decides once, at its first call, from the environment how it runs; the environment comes first. Without a
// number of threads the environment stays as the user has it.
void start_library(std::optional<int> threads);

}  // namespace modal
