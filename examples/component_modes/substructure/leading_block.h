// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "structure/symmetric_matrix.h"

namespace component {

// The first rows and columns of a matrix.
modal::SymmetricMatrix leading_block(const modal::SymmetricMatrix& matrix, std::int32_t order);

}  // namespace component
