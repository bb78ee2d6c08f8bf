// SPDX-License-Identifier: MIT
// Graph, separator, nested dissection and the plan of the fronts.
#include <gtest/gtest.h>

#include <numeric>
#include <set>
#include <string>

#include "factorization/vertex_separator.h"
#include "modal_analysis/solver_matrices.h"

namespace {

using modal::at;
using modal::SymmetricMatrix;
using modaltest::Builder;

std::vector<std::pair<std::string, SymmetricMatrix>> all_shapes() {
  Builder star(400);
  Builder path(400);
  Builder complete(150);
  for (std::int32_t i = 1; i < 400; ++i) {
    star.add(i, 200 == i ? 0 : 200, 1.0);
    path.add(i, i - 1, 1.0);
  }
  for (std::int32_t i = 0; i < 150; ++i) {
    for (std::int32_t j = 0; j < i; ++j) {
      if (i - j != 75) {  // without its partner every vertex has another structure
        complete.add(i, j, 1.0);
      }
    }
  }
  return {{"one unknown", modaltest::identity(1)},
          {"no edges", modaltest::identity(300)},
          {"grid", modaltest::laplacian(31, 17)},
          {"two grids", modaltest::laplacian(15, 15, 2)},
          {"plate", modaltest::plate_pattern(19, 23)},
          {"sparse, in pieces", modaltest::random_dominant(500, 1.5, 11)},
          {"expander", modaltest::random_dominant(400, 8.0, 12)},
          {"star", star.matrix()},
          {"path", path.matrix()},
          {"nearly complete", complete.matrix()}};
}

bool is_permutation_of_all(std::vector<std::int32_t> order, std::int32_t n) {
  std::sort(order.begin(), order.end());
  std::vector<std::int32_t> all(at(n));
  std::iota(all.begin(), all.end(), 0);
  return order == all;
}

TEST(SolverOrdering, UnknownsOfEqualStructureBecomeOneVertex) {
  const modal::Graph plate = modal::compress(modaltest::plate_pattern(7, 5)).graph;
  EXPECT_EQ(plate.vertices(), 35);
  EXPECT_EQ(plate.vertex_weight, std::vector<std::int32_t>(35, 2));
  EXPECT_EQ(plate.neighbours(17).size(), 8U);
  // A path's ends have one neighbour, but not the same one; unconnected unknowns share no neighbour either.
  EXPECT_EQ(modal::compress(modaltest::laplacian(4, 1)).graph.vertices(), 4);
  EXPECT_EQ(modal::compress(modaltest::identity(9)).graph.vertices(), 9);
  // Two unknowns coupled to each other alone are a pair.
  EXPECT_EQ(modal::compress(modaltest::matrix(3, {{2, 0, 1.0}})).graph.vertices(), 2);
}

TEST(SolverOrdering, SeparatorParts) {
  for (const std::int32_t k : {12, 70}) {
    const modal::Graph graph = modal::compress(modaltest::laplacian(k, 2 * k)).graph;
    const modal::Partition partition = modal::vertex_separator(graph);
    std::array<std::int64_t, 3> weight{0, 0, 0};
    for (std::int32_t v = 0; v < graph.vertices(); ++v) {
      weight[partition.part[at(v)]] += graph.vertex_weight[at(v)];
      for (const std::int32_t u : graph.neighbours(v)) {
        ASSERT_FALSE(partition.part[at(v)] == 0 && partition.part[at(u)] == 1) << "edge " << v << " " << u;
      }
    }
    EXPECT_EQ(weight, partition.weight);
    EXPECT_LE(weight[modal::in_separator], 1.3 * k) << "a column of the grid has " << k;
    EXPECT_GE(std::min(weight[0], weight[1]), 0.3 * graph.vertices());
  }
}

// The order is a permutation, and the fronts hold what an elimination, unknown by unknown, fills in.
TEST(SolverOrdering, FrontsHoldAllFillOfEveryShape) {
  for (const auto& [name, a] : all_shapes()) {
    SCOPED_TRACE(name);
    const modal::AssemblyTree tree = modaltest::plan(a);
    ASSERT_TRUE(is_permutation_of_all({tree.unknown.begin(), tree.unknown.end()}, a.order));
    EXPECT_EQ(tree.unknown, modaltest::plan(a).unknown) << "another order in another run";
    std::vector<std::set<std::int32_t>> column(at(a.order));  // positions below the diagonal
    for (std::int32_t i = 0; i < a.order; ++i) {
      for (std::int32_t p = a.row_end[at(i)]; p + 1 < a.row_end[at(i) + 1]; ++p) {
        const auto [above, below] = std::minmax(tree.position[at(i)], tree.position[at(a.column[at(p)] - 1)]);
        column[at(above)].insert(below);
      }
    }
    std::int64_t fill = a.order;
    std::int64_t stored = 0;
    std::int32_t next_pivot = 0;
    for (const modal::Front& front : tree.front) {
      ASSERT_EQ(front.first_pivot, next_pivot);
      next_pivot += front.pivots;
      stored += front.factor_entries();
      const auto below = tree.rows_below(front);
      ASSERT_TRUE(std::is_sorted(below.begin(), below.end()));
      for (std::int32_t k = front.first_pivot; k < next_pivot; ++k) {
        const std::set<std::int32_t>& rows = column[at(k)];
        fill += static_cast<std::int64_t>(rows.size());
        for (const std::int32_t row : rows) {
          ASSERT_TRUE(row < next_pivot || std::binary_search(below.begin(), below.end(), row + 1));
        }
        if (!rows.empty()) {
          column[at(*rows.begin())].insert(std::next(rows.begin()), rows.end());
        }
      }
    }
    EXPECT_EQ(next_pivot, a.order);
    EXPECT_EQ(stored, tree.factor_entries);
    EXPECT_LE(static_cast<double>(stored), 2.6 * static_cast<double>(fill)) << "zeros stored by merging fronts";
  }
}

// The factor of a k × k grid needs O(k² log k) entries with nested dissection and k³ in the order of its rows. The
// factors are those of a sound ordering with little to spare: weights lost in contraction or degrees that leave the
// surroundings out cost a plate five to ten percent.
TEST(SolverOrdering, FillIsThatOfNestedDissection) {
  for (const std::int32_t k : {20, 40, 80}) {
    const double n = k * k;
    const auto entries = static_cast<double>(modaltest::plan(modaltest::laplacian(k, k)).factor_entries);
    EXPECT_LE(entries, 2.3 * n * std::log2(n)) << k;
  }
  EXPECT_LE(modaltest::plan(modaltest::plate_pattern(30, 30)).factor_entries, 88'000);
}

}  // namespace
