// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

#include "spatial_search/octree_oracle.h"

namespace {

using zortest::Cloud;
using zortest::CloudTree;
using zortest::inf;
using Tree = CloudTree<ZORSamOctree>;

constexpr std::uint32_t no_limit = std::numeric_limits<std::uint32_t>::max();

// Nothing is left of a build that failed or was undone.
void expect_empty(const Tree& tree) {
  zortest::Point low{1, 1, 1};
  zortest::Point high{1, 1, 1};
  tree.GetBoundingBox(low[0], low[1], low[2], high[0], high[1], high[2]);
  EXPECT_EQ(low, zortest::Point{});
  EXPECT_EQ(high, zortest::Point{});
  EXPECT_EQ(tree.root(), nullptr);
  EXPECT_EQ(tree.GetNbLevels() + tree.GetMaxNbLevels() + tree.GetMaxNbEntities() + tree.GetNbValidEntities(), 0U);
  EXPECT_EQ(tree.GetMinDiag(), 0);
  EXPECT_EQ(tree.GetFlags(), nullptr);
}

TEST(Octree, RefusesBadArgumentsAndASecondBuild) {
  const Cloud cloud{{0, 0, 0}, {1, 2, 3}};
  Tree tree;
  for (const double diagonal : {0.0, -1.0}) {
    EXPECT_EQ(tree.Build(cloud.data(), 2, 1, nullptr, diagonal, 5), ZORSamStatusUnexpected);
  }
  EXPECT_EQ(tree.Build(nullptr, 2, 1, nullptr, 1, 5), ZORSamStatusUnexpected);
  EXPECT_EQ(tree.Build(cloud.data(), 2, 0, nullptr, 1, 5), ZORSamStatusUnexpected);
  expect_empty(tree);
  ASSERT_EQ(tree.Build(cloud.data(), 2, 1, nullptr, 1, 5), 0);
  EXPECT_EQ(tree.Build(cloud.data(), 1, 2, nullptr, 2, 7), ZORSamStatusUnexpected);
  EXPECT_EQ(tree.GetNbValidEntities(), 2U) << "a refused build changed the tree";
  tree.Reset();
  expect_empty(tree);
  // Even an empty set is a set.
  EXPECT_EQ(tree.Build(cloud.data(), 0, 1, nullptr, 1, 5), 0);
  EXPECT_EQ(tree.Build(cloud.data(), 2, 1, nullptr, 1, 5), ZORSamStatusUnexpected);
}

TEST(Octree, LimitsKeepTheirTwoUnits) {
  struct Case {
    zortest::Point corner;
    double diagonal;
    std::uint32_t levels;
    double stored_diagonal;
    std::uint32_t stored_levels;
  };
  for (const auto& [corner, diagonal, levels, stored_diagonal, stored_levels] : {
           Case{{3, 4, 0}, 5, 9, 5, 0},  // as large as the root: a length
           {{0, 0, 0}, 1, 9, 0, 0},
           {{3, 4, 0}, 4.9, 9, 25, 0},  // a squared length from here on
           {{3, 4, 0}, 0.625, 9, 25.0 / 64, 3},
           {{3, 4, 0}, 0.6, 2, 25.0 / 16, 2},
           {{3, 4, 0}, 1e-300, no_limit, 0, 512},
           {{1e200, 0, 0}, 1, 40, inf, 40},
           {{3, 4, 0}, zortest::nan, 9, 25, 0},
       }) {
    const Cloud cloud{{0, 0, 0}, corner, corner};
    Tree tree;
    ASSERT_EQ(tree.Build(cloud.data(), 3, 1, nullptr, diagonal, levels), 0);
    EXPECT_EQ(tree.GetMinDiag(), stored_diagonal) << diagonal;
    EXPECT_EQ(tree.GetMaxNbLevels(), stored_levels) << diagonal;
    EXPECT_EQ(tree.GetNbLevels(), std::max(stored_levels, 1U)) << "the coincident points sink to the limit";
  }
  const Tree tree;
  EXPECT_EQ(tree.GetTreeMaxNbOctants(3), 73U);
  EXPECT_EQ(tree.GetLevelMaxNbOctants(3), 512U);
  EXPECT_EQ(tree.GetTreeMaxNbOctants(11), 1227133513U);
  EXPECT_EQ(tree.GetLevelMaxNbOctants(11) + tree.GetLevelMaxNbOctants(400) + tree.GetTreeMaxNbOctants(400), 0U);
}

TEST(Octree, TellsItsBox) {
  using Triple = std::array<double, 3>;
  const Cloud cloud{{1, 10, 3}, {5, 2, -1}, {100, 100, 100}, {1.5, 9, 2.5}};
  const unsigned char without_the_third[] = {1, 1, 0, 1};
  Tree tree;
  Triple low{1, 1, 1}, high{1, 1, 1}, centre{1, 1, 1}, sizes{};
  tree.GetCenter(centre[0], centre[1], centre[2]);
  EXPECT_EQ(centre, Triple{});
  ASSERT_EQ(tree.Build(cloud.data(), 4, 1, without_the_third, 1e-3, 9), 0);
  tree.GetBoundingBox(low[0], low[1], low[2], high[0], high[1], high[2]);
  EXPECT_EQ(low, (Triple{1, 2, -1}));
  EXPECT_EQ(high, (Triple{5, 10, 3}));
  tree.GetCenter(centre[0], centre[1], centre[2]);
  EXPECT_EQ(centre, (Triple{3, 6, 1}));
  tree.GetSizes(sizes[0], sizes[1], sizes[2]);
  EXPECT_EQ(sizes, (Triple{4, 8, 4}));
  tree.root()->GetSizes(sizes[0], sizes[1], sizes[2]);
  EXPECT_EQ(sizes, (Triple{4, 8, 4}));
}

// Nodes that count themselves, made until they are refused.
class CountedTree : public Tree {
 public:
  struct Node : ZORSamOctant {
    explicit Node(int& count) : living(count) { ++living; }
    ~Node() override { --living; }
    int& living;
  };
  std::int32_t CreateOctant(ZORSamOctant*& out) const override {
    EXPECT_EQ(out, nullptr);
    const bool made = nodes_left-- > 0;
    out = made || refusal_with_node ? new Node(living) : nullptr;
    return made ? ZORSamStatusOk : status;
  }
  mutable int living = 0;
  mutable int nodes_left = no_limit / 2;
  bool refusal_with_node = false;
  std::int32_t status = ZORSamStatusOutOfMemory;
};

TEST(Octree, OwnsItsNodesAndFailsWithoutATrace) {
  zortest::Random random(5);
  const Cloud cloud = zortest::make_cloud(zortest::clustered, 60, random);
  const auto build = [&cloud](Tree& tree) { return tree.Build(cloud.data(), 60, 4, nullptr, 1e-6, 10); };
  CountedTree whole;
  ASSERT_EQ(build(whole), 0);
  int all = whole.living;
  ASSERT_GT(all, 20);
  whole.Reset();
  EXPECT_EQ(whole.living, 0);
  for (int made = 0; made < all; ++made) {
    for (const bool with_node : {false, true}) {
      CountedTree tree;
      tree.nodes_left = made;
      tree.refusal_with_node = with_node;
      ASSERT_EQ(build(tree), ZORSamStatusOutOfMemory);
      EXPECT_EQ(tree.living, 0);
      expect_empty(tree);
    }
    CountedTree tree;
    tree.nodes_left = made;
    tree.status = ZORSamStatusOk;  // success, but no node
    ASSERT_EQ(build(tree), ZORSamStatusUnexpected);
    expect_empty(tree);
    tree.nodes_left = all;
    EXPECT_EQ(build(tree), 0) << "a failed build cannot be repeated";
  }
  for (std::uint32_t entity = 0; entity < 60; entity += 59) {
    CountedTree tree;
    tree.refused = entity;
    EXPECT_EQ(build(tree), Tree::refusal);
    expect_empty(tree);
  }
  CountedTree::Node node(all);
  ZORSamOctant* taken = &node;
  EXPECT_EQ(Tree().CreateOctant(taken), ZORSamStatusUnexpected);
  EXPECT_EQ(CloudTree<ZORSamNeighborTree>().CreateOctant(taken), ZORSamStatusUnexpected);
  EXPECT_EQ(taken, &node);
}

TEST(Octree, AMillionCoincidentPointsBesideOneFarAway) {
  Cloud cloud(1000000, {0.3, -0.2, 0.1});
  cloud.push_back({1, 1, 1});
  Tree tree;
  ASSERT_EQ(tree.Build(cloud.data(), 1000001, 1, nullptr, 1e-300, no_limit), 0);
  EXPECT_EQ(tree.GetNbLevels(), 512U);
  const ZORSamOctant* octant = tree.root();
  while (!octant->IsLeaf()) {
    const auto* const end = octant->GetChilds() + 8;
    octant = *std::max_element(octant->GetChilds(), end, [](const ZORSamOctant* a, const ZORSamOctant* b) {
      return (a != nullptr ? a->GetNbEntities() : 0) < (b != nullptr ? b->GetNbEntities() : 0);
    });
  }
  EXPECT_EQ(octant->GetNbEntities(), 1000000U);
  EXPECT_EQ(octant->GetCapacity(), 1U << 20);
  EXPECT_EQ(octant->GetIndexes()[999999], 999999U);
}

}  // namespace
