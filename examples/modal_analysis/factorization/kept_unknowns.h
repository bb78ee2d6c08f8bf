// SPDX-License-Identifier: MIT
// The plan of a partial elimination. The kept unknowns are ordered last and, with a full pattern between them, make the
// last front, whose pivots they are no longer: the update that this front collects and leaves,
//
//   −K_rc·K_cc⁻¹·K_cr,    r the kept unknowns, c all others,
//
// holds no entry of K_rr.
#pragma once

#include <cstdint>
#include <span>

#include "factorization/assembly_tree.h"
#include "structure/symmetric_matrix.h"

namespace modal {

// kept: at least one unknown, from 0, none twice. They are the last kept.size() of the tree's order, and the rows of
// its last front, which has no pivots.
AssemblyTree plan_keeping(const SymmetricMatrix& matrix, std::span<const std::int32_t> kept);

}  // namespace modal
