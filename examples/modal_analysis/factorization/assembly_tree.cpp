// SPDX-License-Identifier: MIT
#include "factorization/assembly_tree.h"

#include <algorithm>
#include <numeric>

#include "factorization/elimination_tree.h"
#include "factorization/front_merging.h"

namespace modal {
namespace {

template <class List>
List inverse(const List& order) {
  List position(order.size());
  for (std::size_t k = 0; k < order.size(); ++k) {
    position[at(order[k])] = static_cast<std::int32_t>(k);
  }
  return position;
}

// The fronts with their children before them, the children in the order given.
std::vector<std::int32_t> postorder(const MergedFronts& fronts) {
  const auto columns = static_cast<std::int32_t>(fronts.root.size());
  std::vector<std::uint8_t> is_child(at(columns), 0);
  for (const auto& children : fronts.children) {
    for (const std::int32_t child : children) {
      is_child[at(child)] = 1;
    }
  }
  std::vector<std::int32_t> order;
  std::vector<std::pair<std::int32_t, std::size_t>> path;  // a front and how many of its children are done
  for (std::int32_t f = 0; f < columns; ++f) {
    if (fronts.root[at(f)] != f || is_child[at(f)] != 0) {
      continue;
    }
    path.emplace_back(f, 0);
    while (!path.empty()) {
      auto& [front, done] = path.back();
      const auto& children = fronts.children[at(front)];
      if (done < children.size()) {
        const std::int32_t next = children[done];
        ++done;
        path.emplace_back(next, 0);
      } else {
        order.push_back(front);
        path.pop_back();
      }
    }
  }
  return order;
}

class Builder {
 public:
  Builder(const CompressedGraph& compressed, const std::vector<std::int32_t>& elimination_order,
          const MergedFronts& fronts)
      : compressed_(compressed), fronts_(fronts), front_order_(postorder(fronts)) {
    number(elimination_order);
  }

  AssemblyTree build() {
    tree_.stack_entries = fronts_.stack_entries;
    std::int32_t vertex_position = 0;
    std::vector<std::int32_t> front_of(fronts_.root.size(), -1);
    for (const std::int32_t f : front_order_) {
      front_of[at(f)] = static_cast<std::int32_t>(tree_.front.size());
      const std::int32_t end = vertex_position + vertices_of_front_[at(f)];
      find_rows(f, front_of, vertex_position, end);
      Front front;
      front.first_pivot = start_[at(vertex_position)];
      front.pivots = fronts_.pivots[at(f)];
      front.order = fronts_.order[at(f)];
      front.children = static_cast<std::int32_t>(fronts_.children[at(f)].size());
      front.first_row = static_cast<std::int64_t>(tree_.row.size());
      for (std::size_t p = vertex_row_first_[vertex_row_first_.size() - 2]; p < vertex_row_.size(); ++p) {
        for (std::int32_t k = start_[at(vertex_row_[p])]; k < start_[at(vertex_row_[p]) + 1]; ++k) {
          tree_.row.push_back(k + 1);
        }
      }
      tree_.factor_entries += front.factor_entries();
      tree_.largest_front = std::max(tree_.largest_front, front.order);
      tree_.front.push_back(front);
      vertex_position = end;
    }
    return std::move(tree_);
  }

 private:
  // The final order of the vertices, front by front, and of their unknowns.
  void number(const std::vector<std::int32_t>& elimination_order) {
    vertices_of_front_.assign(fronts_.root.size(), 0);
    for (const std::int32_t f : fronts_.root) {
      ++vertices_of_front_[at(f)];
    }
    std::vector<std::int32_t> next(fronts_.root.size(), 0);
    std::int32_t offset = 0;
    for (const std::int32_t f : front_order_) {
      next[at(f)] = offset;
      offset += vertices_of_front_[at(f)];
    }
    vertex_.resize(elimination_order.size());
    for (std::size_t k = 0; k < elimination_order.size(); ++k) {
      vertex_[at(next[at(fronts_.root[k])]++)] = elimination_order[k];
    }
    vertex_position_ = inverse(vertex_);
    start_.push_back(0);
    for (const std::int32_t v : vertex_) {
      const auto members = compressed_.members(v);
      tree_.unknown.insert(tree_.unknown.end(), members.begin(), members.end());
      start_.push_back(static_cast<std::int32_t>(tree_.unknown.size()));
    }
    tree_.position = inverse(tree_.unknown);
    row_seen_.assign(vertex_.size(), -1);
  }

  // The vertices below the pivots begin .. end-1: neighbours of the pivots, and what the children pass on.
  void find_rows(std::int32_t f, const std::vector<std::int32_t>& front_of, std::int32_t begin, std::int32_t end) {
    const std::size_t list_begin = vertex_row_.size();
    const auto add = [&](std::int32_t k) {
      if (k >= end && row_seen_[at(k)] != f) {
        row_seen_[at(k)] = f;
        vertex_row_.push_back(k);
      }
    };
    for (std::int32_t k = begin; k < end; ++k) {
      for (const std::int32_t u : compressed_.graph.neighbours(vertex_[at(k)])) {
        add(vertex_position_[at(u)]);
      }
    }
    for (const std::int32_t child : fronts_.children[at(f)]) {
      const std::size_t list = at(front_of[at(child)]);
      for (std::size_t p = vertex_row_first_[list]; p < vertex_row_first_[list + 1]; ++p) {
        add(vertex_row_[p]);
      }
    }
    std::sort(vertex_row_.begin() + static_cast<std::ptrdiff_t>(list_begin), vertex_row_.end());
    vertex_row_first_.push_back(vertex_row_.size());
  }

  const CompressedGraph& compressed_;
  const MergedFronts& fronts_;
  std::vector<std::int32_t> front_order_;
  std::vector<std::int32_t> vertices_of_front_;
  std::vector<std::int32_t> vertex_;              // in final elimination order
  std::vector<std::int32_t> vertex_position_;     // of every vertex in that order
  std::vector<std::int32_t> start_;               // position of the first unknown of every vertex, in that order
  std::vector<std::int32_t> row_seen_;            // per vertex position: the last front that took it in
  std::vector<std::size_t> vertex_row_first_{0};  // per front, in postorder
  std::vector<std::int32_t> vertex_row_;          // rows of the fronts as vertex positions
  AssemblyTree tree_;
};

}  // namespace

AssemblyTree assembly_tree(const CompressedGraph& compressed, const std::vector<std::int32_t>& elimination_order,
                           std::int32_t kept) {
  const EliminationTree tree = elimination_tree(compressed.graph, elimination_order, inverse(elimination_order));
  std::vector<std::int32_t> weight;
  weight.reserve(elimination_order.size());
  for (const std::int32_t v : elimination_order) {
    weight.push_back(compressed.graph.vertex_weight[at(v)]);
  }
  const MergedFronts fronts = merge_fronts(tree, weight, kept);
  return Builder(compressed, elimination_order, fronts).build();
}

}  // namespace modal
