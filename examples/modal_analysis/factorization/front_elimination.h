// SPDX-License-Identifier: MIT
// Walks the fronts of A = L·D·Lᵀ in postorder: assembles each, eliminates its pivots and hands it over.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "factorization/assembly_tree.h"
#include "structure/symmetric_matrix.h"

namespace modal {

// Which pivots are refused.
struct PivotRule {
  double smallest;        // |pivot| below this: status 6
  double smallest_ratio;  // pivot / |initial diagonal| at or below this: status 34
  double largest_growth;  // |pivot| / |initial diagonal| above this: status 34, the signs that follow are in doubt
};

// For a positive definite matrix. In exact arithmetic a pivot's ratio to its initial diagonal is 1/(a_ii·(A_i⁻¹)_ii),
// A_i the leading matrix: a sound structure, slender as it may be, stays above 1e-11 or so, while a structure that can
// move as a rigid body ends in a pivot of rounding errors alone, within some 1e-13 of its diagonal for a hundred
// thousand unknowns. A pivot that is not positive has a ratio that is not.
PivotRule positive_definite_rule();

// For an indefinite matrix whose inertia is wanted: pivots of both signs pass. There is no pivoting for size, so a tiny
// pivot would be followed by grown ones, and rounding errors of 1e-16 times that growth could change later signs.
PivotRule indefinite_rule();

struct Refusal {
  std::int32_t equation;  // unknown, from 1, in the numbering of the matrix
  std::int32_t status;    // 6: pivot too small, 34: ratio to the initial diagonal too small (or grown too large)
  double value;           // status 6: the pivot; status 34: the ratio
};

struct Elimination {
  std::optional<Refusal> refusal;
  std::int32_t accepted = 0;  // pivots
  std::int32_t negative = 0;  // of them
  double smallest_ratio = 0;  // of pivot to initial diagonal
  float operations = 0;
};

// Called once per front, in the order of AssemblyTree::front, with its eliminated packed lower triangle by columns:
// pivots on the diagonals of the first columns, multipliers below them.
using TakeFront = std::function<void(const Front& front, const double* packed)>;

// matrix: its pattern must lie within the pattern that the tree was made for. Stops at the first refusal.
Elimination eliminate(const AssemblyTree& tree, const SymmetricMatrix& matrix, const PivotRule& rule,
                      const TakeFront& take);

}  // namespace modal
