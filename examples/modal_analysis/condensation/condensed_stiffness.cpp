// SPDX-License-Identifier: MIT
// All fronts are eliminated; the update that the last one leaves is the second term, and K_rr is added to it.
#include "condensation/condensed_stiffness.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "factorization/front_elimination.h"
#include "factorization/index.h"
#include "factorization/kept_unknowns.h"

namespace modal {
namespace {

// Of entry (i, j) in a packed lower triangle by columns.
std::size_t place(std::int32_t order, std::int32_t i, std::int32_t j) {
  const auto [column, row] = std::minmax({i, j});
  return at(std::int64_t{column} * order - Front::packed(column) + row);
}

}  // namespace

double CondensedStiffness::operator()(std::int32_t i, std::int32_t j) const {
  return lower[place(order, i, j)];
}

CondensedStiffness condense(const SymmetricMatrix& stiffness, std::span<const std::int32_t> retained) {
  CondensedStiffness result;
  result.order = static_cast<std::int32_t>(retained.size());
  result.lower = Array<double>(at(Front::packed(result.order)), 0.0);

  std::vector<std::int32_t> rank(at(stiffness.order), -1);  // among the retained
  for (std::int32_t k = 0; k < result.order; ++k) {
    rank[at(retained[at(k)])] = k;
  }
  for (const std::int32_t i : retained) {
    for (std::int32_t p = stiffness.row_end[at(i)]; p < stiffness.row_end[at(i) + 1]; ++p) {
      const std::int32_t j = p + 1 == stiffness.row_end[at(i) + 1] ? i : stiffness.column[at(p)] - 1;
      if (rank[at(j)] >= 0) {
        result.lower[place(result.order, rank[at(i)], rank[at(j)])] = stiffness.value[at(p)];
      }
    }
  }

  const AssemblyTree tree = plan_keeping(stiffness, retained);
  const Front& last = tree.front.back();
  const Elimination elimination = eliminate(tree, stiffness, positive_definite_rule(stiffness.order),
                                            [&](const Front& front, const double* packed) {
                                              if (&front != &last) {
                                                return;
                                              }
                                              const double* update = packed + front.factor_entries();
                                              const auto rows = tree.rows_below(front);
                                              for (std::size_t j = 0; j < rows.size(); ++j) {
                                                for (std::size_t i = j; i < rows.size(); ++i) {
                                                  const std::int32_t row = rank[at(tree.unknown[at(rows[i] - 1)])];
                                                  const std::int32_t column = rank[at(tree.unknown[at(rows[j] - 1)])];
                                                  result.lower[place(result.order, row, column)] += *update++;
                                                }
                                              }
                                            });
  if (elimination.refusal) {
    const Refusal& refusal = *elimination.refusal;
    throw PivotRefused(refusal.equation, refusal.status, refusal.value, 0.0);
  }

  result.factor = summary(tree);
  result.factor.operations = static_cast<double>(elimination.operations);
  result.factor.smallest_ratio = elimination.smallest_ratio;
  return result;
}

}  // namespace modal
