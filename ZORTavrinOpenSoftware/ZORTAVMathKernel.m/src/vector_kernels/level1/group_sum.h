// SPDX-License-Identifier: MIT
// The fixed order of the summing reductions. With n terms t(1)..t(n), of which the first p ("peel", 0 or 1) stand
// alone:
//
//   four running sums s1..s4 start at 0; s1 takes the peeled term;
//   each group g1..g8 of eight terms:  sk := (sk + gk) + g(k+4),  k = 1..4;
//   s := (s1 + s3) + (s2 + s4);  the fewer than eight terms left over are added to s one at a time.
//
// The pairs (s1, s2) and (s3, s4) are what two accumulators of two lanes hold. Without a group the terms are added one
// at a time from the first.
#pragma once

#include <cstdint>

#include "vector_kernels/strided.h"

namespace zortav {

inline constexpr std::uintptr_t pair_alignment = 2 * sizeof(double);

struct Grouping {
  std::int64_t peel;
  std::int64_t groups;
};

// The grouping of a contiguous vector: groups start on a boundary of a pair, which one peeled element may reach.
static inline Grouping contiguous_grouping(std::int64_t n, const double* x) noexcept {
  const std::uintptr_t past_pair = reinterpret_cast<std::uintptr_t>(x) % pair_alignment;
  if (past_pair % sizeof(double) != 0) {
    return {0, 0};
  }
  const std::int64_t peel = past_pair == 0 ? 0 : 1;
  const std::int64_t groups = n > peel ? (n - peel) / group_size : 0;
  return {groups > 0 ? peel : 0, groups};
}

template <class Term>
static inline double add_one_by_one(double sum, std::int64_t from, std::int64_t n, const Term& term) {
  for (std::int64_t i = from; i < n; ++i) {
    sum += term(i);
  }
  return sum;
}

// The sum of term(0)..term(n-1).
template <class Term>
static inline double group_sum(std::int64_t n, Grouping order, const Term& term) {
  if (order.groups == 0) {
    return add_one_by_one(0.0, 0, n, term);
  }
  double s1 = add_one_by_one(0.0, 0, order.peel, term);
  double s2 = 0;
  double s3 = 0;
  double s4 = 0;
  const std::int64_t end = order.peel + order.groups * group_size;
  for (std::int64_t i = order.peel; i < end; i += group_size) {
    s1 = (s1 + term(i)) + term(i + 4);
    s2 = (s2 + term(i + 1)) + term(i + 5);
    s3 = (s3 + term(i + 2)) + term(i + 6);
    s4 = (s4 + term(i + 3)) + term(i + 7);
  }
  return add_one_by_one((s1 + s3) + (s2 + s4), end, n, term);
}

}  // namespace zortav
