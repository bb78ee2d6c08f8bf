// SPDX-License-Identifier: MIT
#include "factorization/nested_dissection.h"

#include <algorithm>
#include <utility>

#include "factorization/index.h"
#include "factorization/minimum_degree.h"
#include "factorization/vertex_separator.h"

namespace modal {
namespace {

// Parts up to this many vertices are ordered by minimum degree.
constexpr std::size_t small_part = 64;

class NestedDissection {
 public:
  explicit NestedDissection(const Graph& graph)
      : graph_(graph), local_(at(graph.vertices()), -1), order_(at(graph.vertices())) {}

  std::vector<std::int32_t> order() {
    std::vector<std::int32_t> all(at(graph_.vertices()));
    std::iota(all.begin(), all.end(), 0);
    waiting_.push_back({std::move(all), 0});
    while (!waiting_.empty()) {
      Part part = std::move(waiting_.back());
      waiting_.pop_back();
      if (part.vertices.size() <= small_part) {
        place(minimum_degree(graph_, part.vertices, local_), part.position);
      } else {
        split_components(part);
      }
    }
    return std::move(order_);
  }

 private:
  struct Part {
    std::vector<std::int32_t> vertices;
    std::size_t position;  // of the first of them in the order
  };

  void place(const std::vector<std::int32_t>& vertices, std::size_t position) {
    std::copy(vertices.begin(), vertices.end(), order_.begin() + static_cast<std::ptrdiff_t>(position));
  }

  // Numbers the vertices of the part locally and returns the graph between them.
  Graph subgraph(const std::vector<std::int32_t>& vertices) {
    for (std::size_t i = 0; i < vertices.size(); ++i) {
      local_[at(vertices[i])] = static_cast<std::int32_t>(i);
    }
    Graph sub;
    for (const std::int32_t v : vertices) {
      for (const std::int32_t u : graph_.neighbours(v)) {
        if (local_[at(u)] >= 0) {
          sub.neighbour.push_back(local_[at(u)]);
          sub.edge_weight.push_back(1);
        }
      }
      sub.end_vertex(graph_.vertex_weight[at(v)]);
    }
    for (const std::int32_t v : vertices) {
      local_[at(v)] = -1;
    }
    return sub;
  }

  // A connected part is dissected; otherwise its components wait as parts of their own, the small ones bundled.
  void split_components(const Part& part) {
    const Graph sub = subgraph(part.vertices);
    const std::size_t n = part.vertices.size();
    std::vector<std::uint8_t> seen(n, 0);
    std::vector<std::int32_t> bundle;
    std::size_t position = part.position;
    const auto flush = [&] {
      if (!bundle.empty()) {
        const std::size_t size = bundle.size();
        waiting_.push_back({std::exchange(bundle, {}), position});
        position += size;
      }
    };
    for (std::size_t start = 0; start < n; ++start) {
      if (seen[start] != 0) {
        continue;
      }
      std::vector<std::int32_t> component{static_cast<std::int32_t>(start)};
      seen[start] = 1;
      for (std::size_t head = 0; head < component.size(); ++head) {
        for (const std::int32_t u : sub.neighbours(component[head])) {
          if (seen[at(u)] == 0) {
            seen[at(u)] = 1;
            component.push_back(u);
          }
        }
      }
      if (component.size() == n) {
        dissect(part, sub);
        return;
      }
      if (bundle.size() + component.size() > small_part) {
        flush();
      }
      for (const std::int32_t v : component) {
        bundle.push_back(part.vertices[at(v)]);
      }
    }
    flush();
  }

  void dissect(const Part& part, const Graph& sub) {
    const Partition partition = vertex_separator(sub);
    std::vector<std::int32_t> piece[3];
    for (std::size_t i = 0; i < part.vertices.size(); ++i) {
      piece[partition.part[i]].push_back(part.vertices[i]);
    }
    if (piece[0].empty() || piece[1].empty()) {
      // Nearly complete: any order fills it.
      place(part.vertices, part.position);
      return;
    }
    const std::size_t second = part.position + piece[0].size();
    place(piece[in_separator], second + piece[1].size());
    waiting_.push_back({std::move(piece[1]), second});
    waiting_.push_back({std::move(piece[0]), part.position});
  }

  const Graph& graph_;
  std::vector<std::int32_t> local_;
  std::vector<std::int32_t> order_;
  std::vector<Part> waiting_;
};

}  // namespace

std::vector<std::int32_t> nested_dissection(const Graph& graph) {
  return NestedDissection(graph).order();
}

}  // namespace modal
