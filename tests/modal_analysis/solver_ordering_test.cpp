// SPDX-License-Identifier: MIT
// Graph, separator, nested dissection and the plan of the fronts.
#include <gtest/gtest.h>

#include <numeric>
#include <set>
#include <string>

#include "factorization/assembly_tree.h"
#include "factorization/coarser_graph.h"
#include "factorization/compressed_graph.h"
#include "factorization/minimum_degree.h"
#include "factorization/nested_dissection.h"
#include "factorization/vertex_separator.h"
#include "modal_analysis/solver_matrices.h"

namespace {

using modal::at;
using modal::SymmetricMatrix;
using modaltest::Builder;

struct NamedMatrix {
  std::string name;
  SymmetricMatrix matrix;
};

std::vector<NamedMatrix> all_shapes() {
  std::vector<NamedMatrix> shapes;
  shapes.push_back({"one unknown", modaltest::identity(1)});
  shapes.push_back({"no edges", modaltest::identity(300)});
  shapes.push_back({"grid", modaltest::laplacian(31, 17)});
  shapes.push_back({"plate", modaltest::plate_pattern(19, 23)});
  shapes.push_back({"sparse, in pieces", modaltest::random_dominant(500, 1.5, 11)});
  shapes.push_back({"expander", modaltest::random_dominant(400, 8.0, 12)});
  Builder star(400);
  Builder path(400);
  Builder complete(150);
  Builder two_grids(2 * 225);
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
  for (std::int32_t i = 0; i < 225; ++i) {
    for (std::int32_t grid = 0; grid < 2; ++grid) {  // interleaved numbering
      if (i % 15 > 0) {
        two_grids.add(2 * i + grid, 2 * (i - 1) + grid, 1.0);
      }
      if (i >= 15) {
        two_grids.add(2 * i + grid, 2 * (i - 15) + grid, 1.0);
      }
    }
  }
  shapes.push_back({"star", star.matrix()});
  shapes.push_back({"path", path.matrix()});
  shapes.push_back({"nearly complete", complete.matrix()});
  shapes.push_back({"two grids", two_grids.matrix()});
  return shapes;
}

modal::AssemblyTree plan(const SymmetricMatrix& matrix) {
  const modal::CompressedGraph compressed = modal::compress(matrix);
  return modal::assembly_tree(compressed, modal::nested_dissection(compressed.graph));
}

bool is_permutation_of_all(std::vector<std::int32_t> order, std::int32_t n) {
  std::sort(order.begin(), order.end());
  std::vector<std::int32_t> all(at(n));
  std::iota(all.begin(), all.end(), 0);
  return order == all;
}

TEST(SolverOrdering, UnknownsOfEqualStructureBecomeOneVertex) {
  const modal::CompressedGraph plate = modal::compress(modaltest::plate_pattern(7, 5));
  ASSERT_EQ(plate.graph.vertices(), 35);
  for (std::int32_t v = 0; v < 35; ++v) {
    ASSERT_EQ(plate.members(v).size(), 2U);
    EXPECT_EQ(plate.members(v)[0], 2 * v);
    EXPECT_EQ(plate.members(v)[1], 2 * v + 1);
  }
  EXPECT_EQ(plate.graph.neighbours(17).size(), 8U);
  // A path's ends have one neighbour, but not the same one; unconnected unknowns share no neighbour either.
  Builder path(4);
  path.add(1, 0, 1.0);
  path.add(2, 1, 1.0);
  path.add(3, 2, 1.0);
  EXPECT_EQ(modal::compress(path.matrix()).graph.vertices(), 4);
  EXPECT_EQ(modal::compress(modaltest::identity(9)).graph.vertices(), 9);
  // Two unknowns coupled to each other alone are a pair.
  Builder pair(3);
  pair.add(2, 0, 1.0);
  EXPECT_EQ(modal::compress(pair.matrix()).graph.vertices(), 2);
}

TEST(SolverOrdering, ContractionKeepsAllWeights) {
  const modal::Graph fine = modal::compress(modaltest::plate_pattern(16, 11)).graph;
  const modal::CoarserGraph coarse = modal::contract_heavy_edges(fine);
  EXPECT_LT(coarse.graph.vertices(), 0.6 * fine.vertices());
  EXPECT_EQ(coarse.graph.total_weight(), fine.total_weight());
  for (std::int32_t v = 0; v < fine.vertices(); ++v) {
    const std::int32_t to = coarse.vertex_of[at(v)];
    for (const std::int32_t u : fine.neighbours(v)) {
      const auto around = coarse.graph.neighbours(to);
      const std::int32_t other = coarse.vertex_of[at(u)];
      ASSERT_TRUE(other == to || std::count(around.begin(), around.end(), other) == 1) << "edge " << v << " " << u;
    }
  }
  const auto sum = [](const std::vector<std::int32_t>& w) { return std::accumulate(w.begin(), w.end(), 0); };
  int inside = 0;
  for (std::int32_t v = 0; v < fine.vertices(); ++v) {
    for (const std::int32_t u : fine.neighbours(v)) {
      inside += coarse.vertex_of[at(u)] == coarse.vertex_of[at(v)] ? 1 : 0;
    }
  }
  EXPECT_EQ(sum(coarse.graph.edge_weight) + inside, sum(fine.edge_weight));
}

TEST(SolverOrdering, SeparatorParts) {
  for (const std::int32_t k : {12, 40, 70}) {
    const modal::Graph graph = modal::compress(modaltest::laplacian(k, 2 * k)).graph;
    const modal::Partition partition = modal::vertex_separator(graph);
    std::array<std::int64_t, 3> weight{0, 0, 0};
    for (std::int32_t v = 0; v < graph.vertices(); ++v) {
      weight[partition.part[at(v)]] += graph.vertex_weight[at(v)];
      for (const std::int32_t u : graph.neighbours(v)) {
        const bool crossing = partition.part[at(v)] == 0 && partition.part[at(u)] == 1;
        ASSERT_FALSE(crossing) << "edge " << v << " " << u;
      }
    }
    EXPECT_EQ(weight, partition.weight);
    EXPECT_LE(weight[modal::in_separator], 1.3 * k) << "a column of the grid has " << k;
    EXPECT_GE(std::min(weight[0], weight[1]), 0.3 * graph.vertices());
  }
}

TEST(SolverOrdering, MinimumDegreeCountsTheSurroundings) {
  // A path 0-1-2-3, its end 0 also joined to five vertices outside the part: the other end goes first and 0 last.
  Builder b(9);
  for (std::int32_t i = 1; i < 4; ++i) {
    b.add(i, i - 1, 1.0);
  }
  for (std::int32_t i = 4; i < 9; ++i) {
    b.add(i, 0, 1.0);
  }
  const modal::Graph graph = modal::compress(b.matrix()).graph;
  std::vector<std::int32_t> work(9, -1);
  const std::vector<std::int32_t> part{0, 1, 2, 3};
  EXPECT_EQ(modal::minimum_degree(graph, part, work), (std::vector<std::int32_t>{3, 2, 1, 0}));
  EXPECT_EQ(work, std::vector<std::int32_t>(9, -1));
}

TEST(SolverOrdering, IsAPermutationOfEveryShape) {
  for (const NamedMatrix& shape : all_shapes()) {
    SCOPED_TRACE(shape.name);
    const modal::CompressedGraph compressed = modal::compress(shape.matrix);
    const std::vector<std::int32_t> order = modal::nested_dissection(compressed.graph);
    EXPECT_TRUE(is_permutation_of_all(order, compressed.graph.vertices()));
    EXPECT_EQ(order, modal::nested_dissection(compressed.graph)) << "another order in another run";
    const modal::AssemblyTree tree = modal::assembly_tree(compressed, order);
    EXPECT_TRUE(is_permutation_of_all(tree.unknown, shape.matrix.order));
  }
}

// The fronts must hold what an elimination, unknown by unknown, fills in.
TEST(SolverOrdering, FrontsHoldAllFill) {
  for (const NamedMatrix& shape : all_shapes()) {
    SCOPED_TRACE(shape.name);
    const SymmetricMatrix& a = shape.matrix;
    const modal::AssemblyTree tree = plan(a);
    std::vector<std::set<std::int32_t>> column(at(a.order));  // positions below the diagonal
    for (std::int32_t i = 0; i < a.order; ++i) {
      for (std::int32_t p = a.row_end[at(i)]; p + 1 < a.row_end[at(i) + 1]; ++p) {
        const std::int32_t k = tree.position[at(i)];
        const std::int32_t l = tree.position[at(a.column[at(p)] - 1)];
        column[at(std::min(k, l))].insert(std::max(k, l));
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
        std::set<std::int32_t>& rows = column[at(k)];
        fill += static_cast<std::int64_t>(rows.size());
        for (const std::int32_t row : rows) {
          ASSERT_TRUE(row < next_pivot || std::binary_search(below.begin(), below.end(), row + 1));
        }
        if (!rows.empty()) {
          const std::int32_t parent = *rows.begin();
          column[at(parent)].insert(std::next(rows.begin()), rows.end());
        }
        rows.clear();
      }
    }
    EXPECT_EQ(next_pivot, a.order);
    EXPECT_EQ(stored, tree.factor_entries);
    EXPECT_LE(static_cast<double>(stored), 2.6 * static_cast<double>(fill)) << "zeros stored by merging fronts";
  }
}

// The factor of a k × k grid needs O(k² log k) entries with nested dissection and k³ in the order of its rows.
TEST(SolverOrdering, FillOfAGridIsThatOfNestedDissection) {
  for (const std::int32_t k : {20, 40, 80}) {
    const double n = k * k;
    const auto entries = static_cast<double>(plan(modaltest::laplacian(k, k)).factor_entries);
    EXPECT_LE(entries, 2.6 * n * std::log2(n)) << k;
    if (k >= 40) {
      EXPECT_LE(entries, 0.75 * n * k) << k;
    }
  }
}

}  // namespace
