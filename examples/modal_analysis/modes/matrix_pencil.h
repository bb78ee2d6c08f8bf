// SPDX-License-Identifier: MIT
#pragma once

#include "structure/symmetric_matrix.h"

namespace modal {

// K − σ·M, on the union of the two patterns whatever σ is.
SymmetricMatrix shifted(const SymmetricMatrix& k, const SymmetricMatrix& m, double sigma);

}  // namespace modal
