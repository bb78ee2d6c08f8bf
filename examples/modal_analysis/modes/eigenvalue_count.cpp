// SPDX-License-Identifier: MIT
#include "modes/eigenvalue_count.h"

#include <algorithm>
#include <cmath>

#include "factorization/front_elimination.h"
#include "modes/matrix_pencil.h"
#include "modes/modal_solver.h"

namespace modal {
namespace {

// σ stands this far into the gap: the upper end is only an upper bound of an eigenvalue not yet converged.
constexpr double gap_shares[] = {0.1, 0.07, 0.13, 0.05, 0.17, 0.03};
// A gap counts up to this share of its lower end.
constexpr double widest_gap = 0.1;

}  // namespace

EigenvalueCount count_eigenvalues(const SymmetricMatrix& k, const SymmetricMatrix& m, const AssemblyTree& tree,
                                  double low, double high) {
  const double gap = std::min(high - low, widest_gap * std::abs(low));
  Refusal refusal{};
  double refused_at = 0.0;
  for (const double share : gap_shares) {
    const double sigma = low + share * gap;
    const Elimination result =
        eliminate(tree, shifted(k, m, sigma), indefinite_rule(), [](const Front&, const double*) {});
    if (!result.refusal) {
      return {sigma, result.negative};
    }
    refusal = *result.refusal;
    refused_at = sigma;
  }
  throw PivotRefused(refusal.equation, refusal.status, refusal.value, refused_at);
}

}  // namespace modal
