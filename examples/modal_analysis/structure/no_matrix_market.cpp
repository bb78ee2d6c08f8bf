// SPDX-License-Identifier: MIT
// Stands for matrix_market.cpp where the reader that it is built on is not to be had.
#include "structure/input_error.h"
#include "structure/matrix_market.h"

namespace modal {

Structure read_structure(const std::string& stiffness_path, const std::string& /*mass_path*/) {
  throw InputError(stiffness_path + ": this program was built without the reader of Matrix Market files");
}

}  // namespace modal
