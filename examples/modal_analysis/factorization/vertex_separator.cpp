// SPDX-License-Identifier: MIT
#include "factorization/vertex_separator.h"

#include <algorithm>
#include <utility>

#include "factorization/coarser_graph.h"
#include "factorization/index.h"

namespace modal {
namespace {

constexpr std::int32_t coarsest_vertices = 120;
constexpr std::int32_t starts_tried = 8;
// Contraction that keeps more than this share of the vertices (a star, say) is not worth another level.
constexpr double stalled_share = 0.92;

// The vertices in breadth-first order from start.
std::vector<std::int32_t> breadth_first(const Graph& graph, std::int32_t start) {
  std::vector<std::uint8_t> seen(at(graph.vertices()), 0);
  std::vector<std::int32_t> order{start};
  order.reserve(seen.size());
  seen[at(start)] = 1;
  for (std::size_t head = 0; head < order.size(); ++head) {
    for (const std::int32_t u : graph.neighbours(order[head])) {
      if (seen[at(u)] == 0) {
        seen[at(u)] = 1;
        order.push_back(u);
      }
    }
  }
  return order;
}

// Side 0: the vertices nearest to start, up to half the weight. The separator: the rim of side 0.
Partition cut_level_structure(const Graph& graph, std::int32_t start) {
  Partition partition;
  partition.part.assign(at(graph.vertices()), 1);
  const std::int64_t half = graph.total_weight() / 2;
  std::int64_t grown = 0;
  for (const std::int32_t v : breadth_first(graph, start)) {
    if (grown >= half) {
      break;
    }
    partition.part[at(v)] = 0;
    grown += graph.vertex_weight[at(v)];
  }
  for (std::int32_t v = 0; v < graph.vertices(); ++v) {
    if (partition.part[at(v)] == 0) {
      const auto around = graph.neighbours(v);
      if (std::any_of(around.begin(), around.end(), [&](std::int32_t u) { return partition.part[at(u)] == 1; })) {
        partition.part[at(v)] = in_separator;
      }
    }
    partition.weight[partition.part[at(v)]] += graph.vertex_weight[at(v)];
  }
  return partition;
}

// The best of several starts: one end of a long path through the graph, and vertices spread over the numbering.
Partition cut_coarsest(const Graph& graph) {
  const std::int32_t n = graph.vertices();
  std::int32_t start = 0;
  for (int i = 0; i < 2; ++i) {
    start = breadth_first(graph, start).back();
  }
  Partition best = cut_level_structure(graph, start);
  refine_separator(graph, best);
  for (std::int32_t i = 0; i < std::min(starts_tried, n); ++i) {
    start = static_cast<std::int32_t>(static_cast<std::int64_t>(i) * n / std::min(starts_tried, n));
    Partition next = cut_level_structure(graph, start);
    refine_separator(graph, next);
    if (next.better_than(best)) {
      best = std::move(next);
    }
  }
  return best;
}

}  // namespace

Partition vertex_separator(const Graph& graph) {
  std::vector<CoarserGraph> level;  // level[i] is contracted from level[i-1], level[0] from graph
  const auto graph_at = [&](std::size_t i) -> const Graph& { return i == 0 ? graph : level[i - 1].graph; };
  while (graph_at(level.size()).vertices() > coarsest_vertices) {
    const Graph& finest = graph_at(level.size());
    CoarserGraph next = contract_heavy_edges(finest);
    if (next.graph.vertices() > stalled_share * finest.vertices()) {
      break;
    }
    level.push_back(std::move(next));
  }

  Partition partition = cut_coarsest(graph_at(level.size()));
  while (!level.empty()) {
    const std::vector<std::int32_t>& coarse_vertex = level.back().vertex_of;
    std::vector<std::uint8_t> part(coarse_vertex.size());
    std::transform(coarse_vertex.begin(), coarse_vertex.end(), part.begin(),
                   [&](std::int32_t v) { return partition.part[at(v)]; });
    partition.part = std::move(part);
    level.pop_back();
    refine_separator(graph_at(level.size()), partition);
  }
  return partition;
}

}  // namespace modal
