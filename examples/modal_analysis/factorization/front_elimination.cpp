// SPDX-License-Identifier: MIT
#include "factorization/front_elimination.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "ZORTAVFactorization.h"

namespace modal {
namespace {

constexpr std::int32_t ratio_too_small = 34;

// The entries of the matrix by the column of the factor that they enter, in elimination order.
struct PermutedColumns {
  Array<std::int64_t> first;
  Array<std::int32_t> row;  // position, from 0, not above the column's
  Array<double> value;
};

PermutedColumns permute(const AssemblyTree& tree, const SymmetricMatrix& matrix) {
  const std::int32_t n = matrix.order;
  PermutedColumns columns;
  columns.first.assign(at(n) + 2, 0);
  columns.row.resize(matrix.value.size());
  columns.value.resize(matrix.value.size());
  // Two sweeps over the entries: count, then place. first runs one ahead, so that placing leaves it right.
  for (const bool placing : {false, true}) {
    for (std::int32_t i = 0; i < n; ++i) {
      for (std::int32_t p = matrix.row_end[at(i)]; p < matrix.row_end[at(i) + 1]; ++p) {
        const bool diagonal = p + 1 == matrix.row_end[at(i) + 1];
        const std::int32_t k = tree.position[at(i)];
        const std::int32_t l = diagonal ? k : tree.position[at(matrix.column[at(p)] - 1)];
        if (placing) {
          const std::size_t place = at(columns.first[at(std::min(k, l)) + 1]++);
          columns.row[place] = std::max(k, l);
          columns.value[place] = matrix.value[at(p)];
        } else {
          ++columns.first[at(std::min(k, l)) + 2];
        }
      }
    }
    if (!placing) {
      for (std::size_t k = 2; k < columns.first.size(); ++k) {
        columns.first[k] += columns.first[k - 1];
      }
    }
  }
  return columns;
}

class FrontWalk {
 public:
  FrontWalk(const AssemblyTree& tree, const SymmetricMatrix& matrix, const PivotRule& rule)
      : tree_(tree),
        rule_(rule),
        columns_(permute(tree, matrix)),
        initial_(at(tree.order())),
        local_(at(tree.order())),
        front_(at(Front::packed(tree.largest_front))),
        stack_(at(tree.stack_entries)) {
    for (std::int32_t i = 0; i < matrix.order; ++i) {
      // The sign must be the pivot's own, and a ratio to zero would say nothing.
      const double d = std::abs(matrix.value[at(matrix.row_end[at(i) + 1] - 1)]);
      initial_[at(tree.position[at(i)])] = d != 0.0 ? d : 1.0;
    }
  }

  Elimination walk(const TakeFront& take) {
    result_.smallest_ratio = std::numeric_limits<double>::infinity();
    for (std::size_t f = 0; f < tree_.front.size() && !result_.refusal; ++f) {
      const Front& front = tree_.front[f];
      assemble(f);
      if (eliminate_pivots(front)) {
        take(front, front_.data());
        push_update(f);
      }
    }
    result_.accepted = accepted_;
    result_.operations = operations_;
    return result_;
  }

 private:
  // Position of the diagonal of column j in a packed lower triangle of order n, less j: entry (i, j) stands at this
  // plus i.
  static std::int64_t column_base(std::int64_t n, std::int64_t j) { return j * n - Front::packed(j); }

  void assemble(std::size_t f) {
    const Front& front = tree_.front[f];
    double* a = front_.data();
    std::fill_n(a, Front::packed(front.order), 0.0);
    for (std::int32_t i = 0; i < front.pivots; ++i) {
      local_[at(front.first_pivot + i)] = i;
    }
    std::int32_t next = front.pivots;
    for (const std::int32_t k : tree_.rows_below(front)) {
      local_[at(k - 1)] = next++;
    }
    for (std::int32_t j = 0; j < front.pivots; ++j) {
      const std::size_t k = at(front.first_pivot + j);
      const std::int64_t base = column_base(front.order, j);
      for (std::size_t p = at(columns_.first[k]); p < at(columns_.first[k + 1]); ++p) {
        a[base + local_[at(columns_.row[p])]] += columns_.value[p];
      }
    }
    for (std::int32_t child = 0; child < front.children; ++child) {
      extend_add(tree_.front[waiting_.back()], front.order);
      waiting_.pop_back();
    }
  }

  // Adds the update on top of the stack. Rows ascend in child and parent alike, so lower stays lower.
  void extend_add(const Front& child, std::int64_t order) {
    double* a = front_.data();
    stack_top_ -= child.update_entries();
    const double* u = stack_.data() + stack_top_;
    const auto rows = tree_.rows_below(child);
    target_.clear();
    for (const std::int32_t k : rows) {
      target_.push_back(local_[at(k - 1)]);
    }
    for (std::size_t j = 0; j < target_.size(); ++j) {
      double* column = a + column_base(order, target_[j]);
      for (std::size_t i = j; i < target_.size(); ++i) {
        column[target_[i]] += *u++;
      }
    }
  }

  bool eliminate_pivots(const Front& front) {
    const std::int32_t before = equation_;
    std::int32_t status = 0;
    const std::int32_t refused =
        easlff_nt(&front.order, &front.pivots, front_.data(), &result_.smallest_ratio, initial_.data(), &rule_.smallest,
                  &rule_.smallest_ratio, &equation_, &accepted_, &operations_, &other_operations_, &status);
    const std::int32_t examined = equation_ - before;
    for (std::int32_t j = 0; j < examined; ++j) {
      const double pivot = front_[at(column_base(front.order, j) + j)];
      if (refused != 0 && j + 1 == examined) {
        refuse(before + j, status, pivot);  // what stands there is the pivot or the ratio, by status
      } else if (const double ratio = pivot / initial_[at(before + j)]; !(std::abs(ratio) <= rule_.largest_growth)) {
        refuse(before + j, ratio_too_small, ratio);
        return false;
      } else if (pivot < 0.0) {
        ++result_.negative;
      }
    }
    return refused == 0;
  }

  void refuse(std::int32_t position, std::int32_t status, double value) {
    result_.refusal = Refusal{tree_.unknown[at(position)] + 1, status, value};
  }

  // The trailing triangle stands at the end of the front and is one run.
  void push_update(std::size_t f) {
    const Front& front = tree_.front[f];
    const double* update = front_.data() + front.factor_entries();
    std::copy_n(update, front.update_entries(), stack_.data() + stack_top_);
    stack_top_ += front.update_entries();
    waiting_.push_back(f);
  }

  const AssemblyTree& tree_;
  const PivotRule rule_;
  PermutedColumns columns_;
  Array<double> initial_;             // magnitude of the initial diagonal, by position
  Array<std::int32_t> local_;         // row of the current front, by position
  std::vector<std::int32_t> target_;  // rows of the current front that an update adds into
  Array<double> front_;
  Array<double> stack_;
  std::int64_t stack_top_ = 0;
  std::vector<std::size_t> waiting_;  // fronts whose updates are on the stack
  Elimination result_;
  std::int32_t equation_ = 0;
  std::int32_t accepted_ = 0;
  float operations_ = 0;
  float other_operations_ = 0;
};

}  // namespace

PivotRule positive_definite_rule(std::int32_t order) {
  const double rounding = 2.0 * order * std::numeric_limits<double>::epsilon();
  return {std::numeric_limits<double>::min(), std::max(rounding, 1e-13), 2.0};
}

PivotRule indefinite_rule() {
  return {std::numeric_limits<double>::min(), -std::numeric_limits<double>::infinity(), 1e7};
}

Elimination eliminate(const AssemblyTree& tree, const SymmetricMatrix& matrix, const PivotRule& rule,
                      const TakeFront& take) {
  return FrontWalk(tree, matrix, rule).walk(take);
}

}  // namespace modal
