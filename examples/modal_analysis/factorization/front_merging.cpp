// SPDX-License-Identifier: MIT
#include "factorization/front_merging.h"

#include <algorithm>
#include <utility>

#include "factorization/index.h"

namespace modal {
namespace {

// A merge may store zeros up to this share of the merged front's factor entries; the larger the front, the less there
// is to gain from a merge.
struct Allowance {
  std::int32_t pivots;
  double zeros;
};
constexpr Allowance allowance[] = {{8, 0.6}, {24, 0.3}, {64, 0.1}};
constexpr double allowance_of_large = 0.03;

std::int64_t triangle(std::int64_t n) {
  return n * (n + 1) / 2;
}
std::int64_t entries(std::int64_t pivots, std::int64_t order) {
  return triangle(order) - triangle(order - pivots);
}

class Merger {
 public:
  Merger(const EliminationTree& tree, const std::vector<std::int32_t>& column_weight, std::int32_t kept_columns)
      : first_kept_(static_cast<std::int32_t>(column_weight.size()) - kept_columns),
        absorbed_by_(column_weight.size(), -1),
        zeros_(column_weight.size(), 0) {
    fronts_.pivots = column_weight;
    fronts_.order = tree.front_order;
    fronts_.children.resize(column_weight.size());
    for (std::int32_t c = 0; c < columns(); ++c) {
      if (tree.parent[at(c)] >= 0) {
        fronts_.children[at(tree.parent[at(c)])].push_back(c);
      }
    }
  }

  MergedFronts merge() {
    for (std::int32_t parent = 0; parent < columns(); ++parent) {
      merge_children(parent);
    }
    fronts_.root.resize(at(columns()));
    for (std::int32_t c = columns() - 1; c >= 0; --c) {
      fronts_.root[at(c)] = absorbed_by_[at(c)] < 0 ? c : fronts_.root[at(absorbed_by_[at(c)])];
    }
    return std::move(fronts_);
  }

 private:
  std::int32_t columns() const { return static_cast<std::int32_t>(absorbed_by_.size()); }

  // Zeros that the front of parent would store with the child's pivots in it: every pivot of the child gets the
  // parent's rows.
  std::int64_t zeros_together(std::int32_t child, std::int32_t parent) const {
    const std::int64_t pivots = std::int64_t{fronts_.pivots[at(child)]} + fronts_.pivots[at(parent)];
    const std::int64_t order = std::int64_t{fronts_.pivots[at(child)]} + fronts_.order[at(parent)];
    return entries(pivots, order) - entries(fronts_.pivots[at(child)], fronts_.order[at(child)]) -
           entries(fronts_.pivots[at(parent)], fronts_.order[at(parent)]) + zeros_[at(child)] + zeros_[at(parent)];
  }

  bool worth_merging(std::int32_t child, std::int32_t parent) const {
    if (parent >= first_kept_) {
      return child >= first_kept_;
    }
    const std::int64_t zeros = zeros_together(child, parent);
    if (zeros <= zeros_[at(child)] + zeros_[at(parent)]) {
      return true;
    }
    const std::int64_t pivots = std::int64_t{fronts_.pivots[at(child)]} + fronts_.pivots[at(parent)];
    const std::int64_t order = std::int64_t{fronts_.pivots[at(child)]} + fronts_.order[at(parent)];
    const auto* const limit = std::find_if(std::begin(allowance), std::end(allowance),
                                           [&](const Allowance& a) { return pivots <= a.pivots; });
    const double share = limit == std::end(allowance) ? allowance_of_large : limit->zeros;
    return static_cast<double>(zeros) <= share * static_cast<double>(entries(pivots, order));
  }

  void merge_children(std::int32_t parent) {
    std::vector<std::pair<std::int64_t, std::int32_t>> by_zeros;
    for (const std::int32_t child : fronts_.children[at(parent)]) {
      by_zeros.emplace_back(zeros_together(child, parent), child);
    }
    std::sort(by_zeros.begin(), by_zeros.end());
    std::vector<std::int32_t> kept;
    for (const auto& [unused, child] : by_zeros) {
      if (!worth_merging(child, parent)) {
        kept.push_back(child);
        continue;
      }
      zeros_[at(parent)] = zeros_together(child, parent);
      fronts_.pivots[at(parent)] += fronts_.pivots[at(child)];
      fronts_.order[at(parent)] += fronts_.pivots[at(child)];
      absorbed_by_[at(child)] = parent;
      std::vector<std::int32_t> orphans = std::exchange(fronts_.children[at(child)], {});
      kept.insert(kept.end(), orphans.begin(), orphans.end());
    }
    fronts_.children[at(parent)] = std::move(kept);
  }

  std::int32_t first_kept_;
  MergedFronts fronts_;
  std::vector<std::int32_t> absorbed_by_;
  std::vector<std::int64_t> zeros_;
};

// Orders the children of every front for the lowest stack: those whose own elimination needs much more room than their
// update come first (Liu, "On the storage requirement in the out-of-core multifrontal method", ACM TOMS 12, 1986).
void order_children(MergedFronts& fronts) {
  const auto columns = static_cast<std::int32_t>(fronts.root.size());
  std::vector<std::int64_t> peak(at(columns), 0);
  const auto update = [&](std::int32_t f) { return triangle(fronts.order[at(f)] - fronts.pivots[at(f)]); };
  for (std::int32_t f = 0; f < columns; ++f) {
    if (fronts.root[at(f)] != f) {
      continue;
    }
    std::vector<std::int32_t>& children = fronts.children[at(f)];
    std::sort(children.begin(), children.end(), [&](std::int32_t a, std::int32_t b) {
      return std::pair(peak[at(b)] - update(b), a) < std::pair(peak[at(a)] - update(a), b);
    });
    std::int64_t waiting = 0;
    std::int64_t highest = update(f);
    for (const std::int32_t child : children) {
      highest = std::max(highest, waiting + peak[at(child)]);
      waiting += update(child);
    }
    peak[at(f)] = std::max(highest, waiting);
    fronts.stack_entries = std::max(fronts.stack_entries, peak[at(f)]);
  }
}

}  // namespace

MergedFronts merge_fronts(const EliminationTree& tree, const std::vector<std::int32_t>& column_weight,
                          std::int32_t kept_columns) {
  MergedFronts fronts = Merger(tree, column_weight, kept_columns).merge();
  order_children(fronts);
  return fronts;
}

}  // namespace modal
