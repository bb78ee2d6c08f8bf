// SPDX-License-Identifier: MIT
#include "factorization/separator_refinement.h"

#include <algorithm>
#include <queue>
#include <tuple>
#include <utility>

#include "factorization/index.h"

namespace modal {
namespace {

constexpr int pass_limit = 8;
constexpr int uphill_limit = 80;  // moves without a new best state before a pass gives up

// A side may weigh this share of the whole.
constexpr std::int64_t side_share_numerator = 58;
constexpr std::int64_t side_share_denominator = 100;

std::int64_t side_limit(const std::array<std::int64_t, 3>& weight) {
  return (weight[0] + weight[1] + weight[2]) * side_share_numerator / side_share_denominator;
}

class Refinement {
 public:
  Refinement(const Graph& graph, Partition& partition)
      : graph_(graph),
        part_(partition.part),
        weight_(partition.weight),
        pull_{std::vector<std::int64_t>(part_.size()), std::vector<std::int64_t>(part_.size())},
        locked_(part_.size()) {}

  // True when the pass found a better state.
  bool pass() {
    const std::array<std::int64_t, 3> start = weight_;
    std::array<std::int64_t, 3> best = start;
    std::size_t best_length = 0;
    std::fill(locked_.begin(), locked_.end(), std::uint8_t{0});
    log_.clear();
    candidates_ = {};
    for (std::int32_t v = 0; v < graph_.vertices(); ++v) {
      if (part_[at(v)] == in_separator) {
        measure(v);
      }
    }
    for (int uphill = 0; uphill < uphill_limit && !candidates_.empty();) {
      const auto [gain, even, v, side] = candidates_.top();
      candidates_.pop();
      if (part_[at(v)] != in_separator || locked_[at(v)] != 0 || gain != gain_of(v, side)) {
        continue;  // an outdated entry
      }
      if (weight_[side] + graph_.vertex_weight[at(v)] > std::max(side_limit(weight_), weight_[1 - side])) {
        continue;
      }
      move(v, side);
      ++uphill;
      if (better_weights(weight_, best)) {
        best = weight_;
        best_length = log_.size();
        uphill = 0;
      }
    }
    while (log_.size() > best_length) {
      const auto [v, part] = log_.back();
      log_.pop_back();
      place(v, part);
    }
    return better_weights(best, start);
  }

 private:
  std::int64_t gain_of(std::int32_t v, std::uint8_t side) const {
    return graph_.vertex_weight[at(v)] - pull_[1 - side][at(v)];
  }

  // Offers a separator vertex to both sides. Of equal gains the one to the lighter side comes first.
  void offer(std::int32_t v) {
    if (locked_[at(v)] == 0) {
      for (const std::uint8_t side : {std::uint8_t{0}, std::uint8_t{1}}) {
        candidates_.emplace(gain_of(v, side), weight_[1 - side] - weight_[side], v, side);
      }
    }
  }

  void measure(std::int32_t v) {
    pull_[0][at(v)] = 0;
    pull_[1][at(v)] = 0;
    for (const std::int32_t u : graph_.neighbours(v)) {
      if (part_[at(u)] != in_separator) {
        pull_[part_[at(u)]][at(v)] += graph_.vertex_weight[at(u)];
      }
    }
    offer(v);
  }

  void place(std::int32_t v, std::uint8_t part) {
    weight_[part_[at(v)]] -= graph_.vertex_weight[at(v)];
    weight_[part] += graph_.vertex_weight[at(v)];
    part_[at(v)] = part;
  }

  void logged_place(std::int32_t v, std::uint8_t part) {
    log_.emplace_back(v, part_[at(v)]);
    place(v, part);
  }

  void move(std::int32_t v, std::uint8_t side) {
    const std::uint8_t other = side == 0 ? 1 : 0;
    logged_place(v, side);
    locked_[at(v)] = 1;
    for (const std::int32_t u : graph_.neighbours(v)) {
      if (part_[at(u)] == in_separator) {
        pull_[side][at(u)] += graph_.vertex_weight[at(v)];
        offer(u);
      } else if (part_[at(u)] == other) {
        logged_place(u, in_separator);
        for (const std::int32_t w : graph_.neighbours(u)) {
          if (part_[at(w)] == in_separator) {
            pull_[other][at(w)] -= graph_.vertex_weight[at(u)];
            offer(w);
          }
        }
        measure(u);
      }
    }
  }

  const Graph& graph_;
  std::vector<std::uint8_t>& part_;
  std::array<std::int64_t, 3>& weight_;
  std::array<std::vector<std::int64_t>, 2> pull_;  // of a separator vertex: weight of its neighbours on each side
  std::vector<std::uint8_t> locked_;
  std::vector<std::pair<std::int32_t, std::uint8_t>> log_;  // vertices moved and where they were
  std::priority_queue<std::tuple<std::int64_t, std::int64_t, std::int32_t, std::uint8_t>> candidates_;
};

}  // namespace

bool better_weights(const std::array<std::int64_t, 3>& a, const std::array<std::int64_t, 3>& b) {
  const auto rank = [](const std::array<std::int64_t, 3>& w) {
    const std::int64_t heavier = std::max(w[0], w[1]);
    return std::tuple(std::max<std::int64_t>(0, heavier - side_limit(w)), w[in_separator], heavier);
  };
  return rank(a) < rank(b);
}

bool Partition::better_than(const Partition& other) const {
  return better_weights(weight, other.weight);
}

void refine_separator(const Graph& graph, Partition& partition) {
  Refinement refinement(graph, partition);
  for (int pass = 0; pass < pass_limit && refinement.pass(); ++pass) {
  }
}

}  // namespace modal
