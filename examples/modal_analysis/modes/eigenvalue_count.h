// SPDX-License-Identifier: MIT
// How many eigenvalues of K·x = λ·M·x lie below a number: as many as K − σ·M has negative pivots (Sylvester's law of
// inertia). This is the check that no mode was missed.
#pragma once

#include <cstdint>
#include <vector>

#include "factorization/assembly_tree.h"
#include "structure/symmetric_matrix.h"

namespace modal {

struct EigenvalueCount {
  double shift;        // σ
  std::int32_t below;  // eigenvalues below it
};

// Counts below a σ between low and high, near low (low = 0: below 0; high infinite: above low). Where the elimination,
// which does not pivot for size, breaks down at some σ, others in the gap are tried; throws PivotRefused when all fail.
// The tree must cover the patterns of both matrices.
EigenvalueCount count_eigenvalues(const SymmetricMatrix& k, const SymmetricMatrix& m, const AssemblyTree& tree,
                                  double low, double high);

}  // namespace modal
