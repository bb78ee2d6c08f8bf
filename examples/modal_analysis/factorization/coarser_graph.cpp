// SPDX-License-Identifier: MIT
#include "factorization/coarser_graph.h"

#include <numeric>

#include "factorization/index.h"

namespace modal {
namespace {

// A vertex may grow to this multiple of the mean weight, so that no coarse vertex outweighs the balance of a cut.
constexpr std::int64_t growth_limit = 6;

// A step through 0 .. n-1 without common divisor with n, near the golden section: neighbours in the numbering, which
// are often neighbours in the mesh, are visited far apart.
std::int32_t scattering_step(std::int32_t n) {
  constexpr double golden_section = 0.6180339887498949;
  auto step = static_cast<std::int32_t>(golden_section * n) + 1;
  while (std::gcd(step, n) != 1) {
    ++step;
  }
  return step;
}

std::vector<std::int32_t> match_heavy_edges(const Graph& fine) {
  const std::int32_t n = fine.vertices();
  const std::int64_t heaviest = growth_limit * fine.total_weight() / n;
  const std::int32_t step = scattering_step(n);
  std::vector<std::int32_t> mate(at(n), -1);
  std::int64_t v64 = 0;
  for (std::int32_t count = 0; count < n; ++count, v64 = (v64 + step) % n) {
    const auto v = static_cast<std::int32_t>(v64);
    if (mate[at(v)] >= 0) {
      continue;
    }
    mate[at(v)] = v;
    std::int32_t best = -1;
    std::int32_t best_weight = 0;
    const auto around = fine.neighbours(v);
    const auto weight = fine.edge_weights(v);
    for (std::size_t p = 0; p < around.size(); ++p) {
      const std::int32_t u = around[p];
      const std::int64_t together = std::int64_t{fine.vertex_weight[at(v)]} + fine.vertex_weight[at(u)];
      if (mate[at(u)] < 0 && together <= heaviest &&
          (weight[p] > best_weight ||
           (weight[p] == best_weight && fine.vertex_weight[at(u)] < fine.vertex_weight[at(best)]))) {
        best = u;
        best_weight = weight[p];
      }
    }
    if (best >= 0) {
      mate[at(v)] = best;
      mate[at(best)] = v;
    }
  }
  return mate;
}

}  // namespace

CoarserGraph contract_heavy_edges(const Graph& fine) {
  const std::int32_t n = fine.vertices();
  const std::vector<std::int32_t> mate = match_heavy_edges(fine);
  CoarserGraph result;
  result.vertex_of.assign(at(n), -1);
  std::int32_t coarse_vertices = 0;
  for (std::int32_t v = 0; v < n; ++v) {
    if (mate[at(v)] >= v) {
      result.vertex_of[at(v)] = coarse_vertices;
      result.vertex_of[at(mate[at(v)])] = coarse_vertices;
      ++coarse_vertices;
    }
  }

  Graph& coarse = result.graph;
  std::vector<std::int64_t> place(at(coarse_vertices), -1);  // of a neighbour in the list being built
  for (std::int32_t v = 0; v < n; ++v) {
    if (mate[at(v)] < v) {
      continue;
    }
    const std::int32_t self = result.vertex_of[at(v)];
    const std::int64_t list_begin = coarse.first.back();
    std::int32_t weight = 0;
    const auto gather = [&](std::int32_t w) {
      weight += fine.vertex_weight[at(w)];
      const auto around = fine.neighbours(w);
      const auto edge_weight = fine.edge_weights(w);
      for (std::size_t p = 0; p < around.size(); ++p) {
        const std::int32_t u = result.vertex_of[at(around[p])];
        if (u == self) {
          continue;
        }
        if (place[at(u)] < list_begin) {
          place[at(u)] = static_cast<std::int64_t>(coarse.neighbour.size());
          coarse.neighbour.push_back(u);
          coarse.edge_weight.push_back(edge_weight[p]);
        } else {
          coarse.edge_weight[at(place[at(u)])] += edge_weight[p];
        }
      }
    };
    gather(v);
    if (mate[at(v)] != v) {
      gather(mate[at(v)]);
    }
    coarse.end_vertex(weight);
  }
  return result;
}

}  // namespace modal
