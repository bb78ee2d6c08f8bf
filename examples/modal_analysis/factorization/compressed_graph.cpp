// SPDX-License-Identifier: MIT
#include "factorization/compressed_graph.h"

#include <algorithm>

#include "factorization/index.h"

namespace modal {
namespace {

// Scatters the bits of i (the finaliser of splitmix64), so that sums over sets of unknowns rarely agree by accident.
std::uint64_t scatter(std::int32_t i) {
  std::uint64_t z = (static_cast<std::uint64_t>(i) + 1) * 0x9e3779b97f4a7c15U;
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
  return z ^ (z >> 31);
}

// Both triangles of the pattern; rows are visited in ascending order, so every list comes out ascending.
Graph full_pattern(const SymmetricMatrix& matrix) {
  const std::int32_t n = matrix.order;
  Graph graph;
  graph.first.assign(at(n) + 1, 0);
  const auto each_entry = [&](auto&& visit) {
    for (std::int32_t i = 0; i < n; ++i) {
      for (std::int32_t p = matrix.row_end[at(i)]; p < matrix.row_end[at(i) + 1] - 1; ++p) {
        visit(i, matrix.column[at(p)] - 1);
      }
    }
  };
  each_entry([&](std::int32_t i, std::int32_t j) {
    ++graph.first[at(i) + 1];
    ++graph.first[at(j) + 1];
  });
  std::partial_sum(graph.first.begin(), graph.first.end(), graph.first.begin());
  graph.neighbour.resize(at(graph.first.back()));
  std::vector<std::int64_t> next(graph.first.begin(), graph.first.end() - 1);
  each_entry([&](std::int32_t i, std::int32_t j) {
    graph.neighbour[at(next[at(i)]++)] = j;
    graph.neighbour[at(next[at(j)]++)] = i;
  });
  return graph;
}

}  // namespace

CompressedGraph compress(const SymmetricMatrix& matrix, std::span<const std::uint8_t> kind) {
  const std::int32_t n = matrix.order;
  const Graph full = full_pattern(matrix);
  std::vector<std::uint64_t> key(at(n));
  for (std::int32_t i = 0; i < n; ++i) {
    key[at(i)] = scatter(i);
    for (const std::int32_t j : full.neighbours(i)) {
      key[at(i)] += scatter(j);
    }
  }

  // Unknowns of equal structure are neighbours of each other, so only neighbours are compared.
  std::vector<std::int32_t> vertex_of(at(n), -1);
  std::vector<std::int32_t> mark(at(n), -1);
  std::vector<std::int32_t> leader;
  for (std::int32_t i = 0; i < n; ++i) {
    if (vertex_of[at(i)] >= 0) {
      continue;
    }
    const auto vertex = static_cast<std::int32_t>(leader.size());
    leader.push_back(i);
    vertex_of[at(i)] = vertex;
    for (const std::int32_t j : full.neighbours(i)) {
      if (vertex_of[at(j)] >= 0 || key[at(j)] != key[at(i)] || full.neighbours(j).size() != full.neighbours(i).size()) {
        continue;
      }
      if (!kind.empty() && kind[at(i)] != kind[at(j)]) {
        continue;
      }
      if (mark[at(i)] != i) {
        mark[at(i)] = i;
        for (const std::int32_t k : full.neighbours(i)) {
          mark[at(k)] = i;
        }
      }
      const auto others = full.neighbours(j);
      if (std::all_of(others.begin(), others.end(), [&](std::int32_t k) { return mark[at(k)] == i; })) {
        vertex_of[at(j)] = vertex;
      }
    }
  }

  const auto vertices = static_cast<std::int32_t>(leader.size());
  CompressedGraph compressed;
  compressed.member_first.assign(at(vertices) + 1, 0);
  for (const std::int32_t vertex : vertex_of) {
    ++compressed.member_first[at(vertex) + 1];
  }
  std::partial_sum(compressed.member_first.begin(), compressed.member_first.end(), compressed.member_first.begin());
  compressed.member.resize(at(n));
  std::vector<std::int32_t> next(compressed.member_first.begin(), compressed.member_first.end() - 1);
  for (std::int32_t i = 0; i < n; ++i) {
    compressed.member[at(next[at(vertex_of[at(i)])]++)] = i;
  }

  std::fill(mark.begin(), mark.end(), -1);
  Graph& graph = compressed.graph;
  for (std::int32_t v = 0; v < vertices; ++v) {
    mark[at(v)] = v;
    for (const std::int32_t j : full.neighbours(leader[at(v)])) {
      const std::int32_t w = vertex_of[at(j)];
      if (mark[at(w)] != v) {
        mark[at(w)] = v;
        graph.neighbour.push_back(w);
        graph.edge_weight.push_back(1);
      }
    }
    graph.end_vertex(compressed.member_first[at(v) + 1] - compressed.member_first[at(v)]);
  }
  return compressed;
}

}  // namespace modal
