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

// For a positive definite matrix. In exact arithmetic the ratio of a pivot to its initial diagonal is
// 1/(a_ii·(A_i⁻¹)_ii), A_i the leading matrix. A structure that can move as a rigid body ends in a pivot that is
// nothing but rounding errors; on meshes of 200 to 80000 unknowns they stayed below order·2e-16 of the diagonal,
// growing with the number of updates, which is the order. The limit is twice that. Sound cantilevers stay above it up
// to a slenderness of 1000; what comes nearer could not be told from a moving one. A pivot that is not positive has a
// ratio that is not.
PivotRule positive_definite_rule(std::int32_t order);

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

// matrix: its pattern must lie within the pattern that the tree was made for. Where the tree keeps the last unknowns,
// the matrix may end before them. Stops at the first refusal.
Elimination eliminate(const AssemblyTree& tree, const SymmetricMatrix& matrix, const PivotRule& rule,
                      const TakeFront& take);

}  // namespace modal
