// SPDX-License-Identifier: MIT
// An undirected graph with weighted vertices and edges, each edge held from both ends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <span>
#include <vector>

#include "factorization/index.h"

namespace modal {

struct Graph {
  std::vector<std::int64_t> first{0};       // vertices + 1 entries
  std::vector<std::int32_t> neighbour;      // of vertex v: positions first[v] .. first[v+1]-1, without v itself
  std::vector<std::int32_t> edge_weight;    // beside neighbour
  std::vector<std::int32_t> vertex_weight;  // unknowns that the vertex stands for

  std::int32_t vertices() const { return static_cast<std::int32_t>(first.size()) - 1; }

  std::span<const std::int32_t> neighbours(std::int32_t v) const { return slice(neighbour, v); }
  std::span<const std::int32_t> edge_weights(std::int32_t v) const { return slice(edge_weight, v); }

  std::int64_t total_weight() const {
    return std::accumulate(vertex_weight.begin(), vertex_weight.end(), std::int64_t{0});
  }

  // Closes the list of the vertex being appended.
  void end_vertex(std::int32_t weight) {
    first.push_back(static_cast<std::int64_t>(neighbour.size()));
    vertex_weight.push_back(weight);
  }

 private:
  std::span<const std::int32_t> slice(const std::vector<std::int32_t>& list, std::int32_t v) const {
    const auto begin = at(first[at(v)]);
    const auto end = at(first[at(v) + 1]);
    return std::span(list).subspan(begin, end - begin);
  }
};

}  // namespace modal
