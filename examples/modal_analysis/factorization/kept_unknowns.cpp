// SPDX-License-Identifier: MIT
#include "factorization/kept_unknowns.h"

#include <algorithm>
#include <vector>

#include "factorization/compressed_graph.h"
#include "factorization/nested_dissection.h"

namespace modal {
namespace {

// The pattern of the matrix, and a place for every pair of kept unknowns.
SymmetricMatrix pattern_with_clique(const SymmetricMatrix& matrix, const std::vector<std::uint8_t>& is_kept) {
  SymmetricMatrix pattern;
  pattern.order = matrix.order;
  std::vector<std::int32_t> kept_before;  // columns from 1
  std::vector<std::int32_t> row;
  for (std::int32_t i = 0; i < matrix.order; ++i) {
    const auto* const first = matrix.column.data() + matrix.row_end[at(i)];
    const auto* const diagonal = matrix.column.data() + matrix.row_end[at(i) + 1] - 1;
    row.clear();
    if (is_kept[at(i)] != 0) {
      std::set_union(first, diagonal, kept_before.begin(), kept_before.end(), std::back_inserter(row));
      kept_before.push_back(i + 1);
    } else {
      row.assign(first, diagonal);
    }
    row.push_back(i + 1);
    pattern.column.insert(pattern.column.end(), row.begin(), row.end());
    pattern.row_end.push_back(static_cast<std::int32_t>(pattern.column.size()));
  }
  return pattern;
}

// The vertices of the graph in an order of low fill, those that are kept after all others.
std::vector<std::int32_t> order_keeping(const Graph& graph, const std::vector<std::uint8_t>& is_kept) {
  std::vector<std::int32_t> others;
  std::vector<std::int32_t> local(is_kept.size(), -1);
  for (std::int32_t v = 0; v < graph.vertices(); ++v) {
    if (is_kept[at(v)] == 0) {
      local[at(v)] = static_cast<std::int32_t>(others.size());
      others.push_back(v);
    }
  }
  Graph between;  // the others
  for (const std::int32_t v : others) {
    for (const std::int32_t u : graph.neighbours(v)) {
      if (local[at(u)] >= 0) {
        between.neighbour.push_back(local[at(u)]);
        between.edge_weight.push_back(1);
      }
    }
    between.end_vertex(graph.vertex_weight[at(v)]);
  }
  std::vector<std::int32_t> order;
  if (!others.empty()) {
    order = nested_dissection(between);
    std::transform(order.begin(), order.end(), order.begin(), [&](std::int32_t v) { return others[at(v)]; });
  }
  for (std::int32_t v = 0; v < graph.vertices(); ++v) {
    if (is_kept[at(v)] != 0) {
      order.push_back(v);
    }
  }
  return order;
}

}  // namespace

AssemblyTree plan_keeping(const SymmetricMatrix& matrix, std::span<const std::int32_t> kept) {
  std::vector<std::uint8_t> is_kept(at(matrix.order), 0);
  for (const std::int32_t i : kept) {
    is_kept[at(i)] = 1;
  }
  const CompressedGraph compressed = compress(pattern_with_clique(matrix, is_kept), is_kept);
  std::vector<std::uint8_t> vertex_is_kept;
  vertex_is_kept.reserve(at(compressed.graph.vertices()));
  for (std::int32_t v = 0; v < compressed.graph.vertices(); ++v) {
    vertex_is_kept.push_back(is_kept[at(compressed.members(v).front())]);
  }
  const auto kept_vertices =
      static_cast<std::int32_t>(std::count(vertex_is_kept.begin(), vertex_is_kept.end(), std::uint8_t{1}));
  AssemblyTree tree = assembly_tree(compressed, order_keeping(compressed.graph, vertex_is_kept), kept_vertices);

  const auto count = static_cast<std::int32_t>(kept.size());
  Front& last = tree.front.back();
  last.pivots = 0;
  last.first_row = static_cast<std::int64_t>(tree.row.size());
  for (std::int32_t k = matrix.order - count; k < matrix.order; ++k) {
    tree.row.push_back(k + 1);
  }
  tree.factor_entries -= Front::packed(count);
  tree.stack_entries = std::max(tree.stack_entries, Front::packed(count));
  return tree;
}

}  // namespace modal
