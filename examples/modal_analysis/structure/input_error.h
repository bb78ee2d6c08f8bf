// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

namespace modal {

// What the user gave cannot be used. The text is one line that names the file and line, or the option, at fault.
struct InputError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace modal
