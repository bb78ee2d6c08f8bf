// SPDX-License-Identifier: MIT
// The small dense problem A·c = θ·B·c, cᵀ·B·c = 1, with B semi-definite.
//
// B = L·Lᵀ by rows; a row whose pivot vanishes against its diagonal depends on the rows before it (or has no B at all)
// and is left out. Then L⁻¹·A·L⁻ᵀ·v = θ·v and c = L⁻ᵀ·v (Wilkinson, "The algebraic eigenvalue problem", 1965, chapter
// 5).
#pragma once

#include <cstdint>
#include <vector>

namespace modal {

struct ReducedSolution {
  std::vector<double> value;        // ascending; one for every direction kept
  std::vector<double> coefficient;  // order × value.size(), column by column; zero in the rows left out
};

// a and b: order × order, column by column, both triangles. Throws NotConverged when the eigen-solver gives up.
ReducedSolution solve_reduced(std::int32_t order, const std::vector<double>& a, const std::vector<double>& b);

}  // namespace modal
