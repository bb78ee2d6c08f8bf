// SPDX-License-Identifier: MIT
// Makes a vertex separator lighter and its sides more even.
//
// A pass moves separator vertices to a side, best gain first, each vertex at most once, pulling their neighbours on the
// other side into the separator, also uphill for a while; the best state seen is kept. Passes repeat while they help.
// Fiduccia and Mattheyses, "A linear-time heuristic for improving network partitions", DAC 1982, in the form for vertex
// separators of Hendrickson and Rothberg, "Improving the run time and quality of nested dissection ordering", SIAM J.
// Sci. Comput. 20, 1998.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "factorization/graph.h"

namespace modal {

inline constexpr std::uint8_t in_separator = 2;  // beside the sides 0 and 1

struct Partition {
  std::vector<std::uint8_t> part;               // per vertex: 0, 1 or in_separator; no edge joins 0 and 1
  std::array<std::int64_t, 3> weight{0, 0, 0};  // of the three parts

  // Lighter separators first, among sides that are even enough; then the more even one.
  bool better_than(const Partition& other) const;
};

// The same test on weights alone.
bool better_weights(const std::array<std::int64_t, 3>& a, const std::array<std::int64_t, 3>& b);

void refine_separator(const Graph& graph, Partition& partition);

}  // namespace modal
