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

RetainedBlock::RetainedBlock(const SymmetricMatrix& matrix, std::span<const std::int32_t> retained)
    : rank_(at(matrix.order), -1) {
  sum_.order = static_cast<std::int32_t>(retained.size());
  sum_.lower = Array<double>(at(Front::packed(sum_.order)), 0.0);
  for (std::int32_t k = 0; k < sum_.order; ++k) {
    rank_[at(retained[at(k)])] = k;
  }
  for (const std::int32_t i : retained) {
    for (std::int32_t p = matrix.row_end[at(i)]; p < matrix.row_end[at(i) + 1]; ++p) {
      const std::int32_t j = p + 1 == matrix.row_end[at(i) + 1] ? i : matrix.column[at(p)] - 1;
      if (rank_[at(j)] >= 0) {
        sum_.lower[place(sum_.order, rank_[at(i)], rank_[at(j)])] = matrix.value[at(p)];
      }
    }
  }
}

void RetainedBlock::add_update(const AssemblyTree& tree, const double* update) {
  const auto rows = tree.rows_below(tree.front.back());
  for (std::size_t j = 0; j < rows.size(); ++j) {
    for (std::size_t i = j; i < rows.size(); ++i) {
      const std::int32_t row = rank_[at(tree.unknown[at(rows[i] - 1)])];
      const std::int32_t column = rank_[at(tree.unknown[at(rows[j] - 1)])];
      sum_.lower[place(sum_.order, row, column)] += *update++;
    }
  }
}

CondensedStiffness condense(const SymmetricMatrix& stiffness, std::span<const std::int32_t> retained) {
  RetainedBlock block(stiffness, retained);
  const AssemblyTree tree = plan_keeping(stiffness, retained);
  const Front& last = tree.front.back();
  const Elimination elimination = eliminate(tree, stiffness, positive_definite_rule(stiffness.order),
                                            [&](const Front& front, const double* packed) {
                                              if (&front == &last) {
                                                block.add_update(tree, packed + front.factor_entries());
                                              }
                                            });
  if (elimination.refusal) {
    const Refusal& refusal = *elimination.refusal;
    throw PivotRefused(refusal.equation, refusal.status, refusal.value, 0.0);
  }

  CondensedStiffness result = std::move(block.sum());
  result.factor = summary(tree);
  result.factor.operations = static_cast<double>(elimination.operations);
  result.factor.smallest_ratio = elimination.smallest_ratio;
  return result;
}

}  // namespace modal
