// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "spatial_search/octree_oracle.h"

namespace {

using zortest::Cloud;
using zortest::nan;
using zortest::OctreeOracle;
using zortest::OracleQuery;
using zortest::Point;
using zortest::Random;
using zortest::same_bits;
using Tree = zortest::CloudTree<ZORSamNeighborTree>;

struct Answer {
  std::uint32_t found = 99;
  std::vector<std::uint32_t> index;
  std::vector<double> square;
};

Answer ask(Tree& tree, const OracleQuery& q) {
  const std::size_t room = std::min(q.target, tree.GetNbValidEntities());
  zortest::Guarded<std::uint32_t> index(room);
  zortest::Guarded<double> square(room);
  Answer answer;
  EXPECT_EQ(tree.GetNeighbors(q.at[0], q.at[1], q.at[2], q.target, answer.found, index.data(), square.data(), q.error,
                              q.most_probes, q.self ? 1 : 0),
            0);
  EXPECT_TRUE(index.intact() && square.intact());
  answer.index = index.values();
  answer.square = square.values();
  return answer;
}

OracleQuery some_query(const Cloud& cloud, Random& random) {
  OracleQuery q;
  q.at = {random.uniform(), random.uniform(), random.uniform()};
  if (random.integer(0, 2) == 0) {
    q.at = cloud[static_cast<std::size_t>(random.integer(0, static_cast<int>(cloud.size()) - 1))];
  }
  const int n = static_cast<int>(cloud.size());
  q.target = static_cast<std::uint32_t>(random.integer(1, random.integer(0, 3) == 0 ? 2 * n : 12));
  q.error = std::array{0.0, 0.0, 0.1, 1.0, nan}[static_cast<std::size_t>(random.integer(0, 4))];
  q.most_probes = static_cast<std::uint32_t>(random.integer(0, 2) == 0 ? random.integer(1, n) : 2 * n);
  q.self = random.integer(0, 1) == 1;
  return q;
}

// What an unlimited search promises: nothing is missed below 1/√3 of the largest distance, and nothing at all, in the
// order of the distances, where every entity was asked for.
void expect_promised(const Cloud& cloud, const std::vector<unsigned char>& flags, const Point& at,
                     const std::vector<double>& found) {
  std::vector<double> square;
  for (std::size_t i = 0; i < cloud.size(); ++i) {
    const Point d{cloud[i][0] - at[0], cloud[i][1] - at[1], cloud[i][2] - at[2]};
    if (flags[i] != 0) {
      square.push_back(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
    }
  }
  std::sort(square.begin(), square.end());
  const double sure = square.size() == found.size() ? zortest::inf : found.back() / 3 * (1 - 1e-9);
  for (std::size_t i = 0; i < square.size() && square[i] < sure; ++i) {
    ASSERT_LT(i, found.size());
    ASSERT_TRUE(same_bits(square[i], found[i])) << i;
  }
}

TEST(NeighborTree, BuildsAndSearchesByTheRules) {
  for (int seed = 0; seed < 500; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(static_cast<std::uint64_t>(seed));
    const int kind = seed % zortest::cloud_kinds;
    const int n = random.integer(1, seed % 5 == 0 ? 1500 : 150);
    const Cloud cloud = zortest::make_cloud(kind, n, random);
    const auto capacity = static_cast<std::uint32_t>(seed % 3 == 0 ? 1 : random.integer(2, 20));
    const auto levels = std::array{40U, 6U, 3U, 2U, 1U, 0U}[static_cast<std::size_t>(random.integer(0, 5))];
    const double diagonal = std::pow(10.0, -random.integer(0, 12));
    std::vector<unsigned char> flags(cloud.size(), 1);
    for (unsigned char& flag : flags) {
      flag = seed % 2 == 0 || random.integer(0, 4) > 0 ? 200 : 0;
    }
    OctreeOracle oracle(cloud, capacity, flags.data(), diagonal, levels);
    Tree tree;
    ASSERT_EQ(tree.Build(cloud.data(), static_cast<std::uint32_t>(n), capacity, seed % 2 == 0 ? nullptr : flags.data(),
                         diagonal, levels),
              0);
    ASSERT_NO_FATAL_FAILURE(oracle.expect_same(tree.root()));
    ASSERT_EQ(tree.GetNbValidEntities(), oracle.valid);
    ASSERT_EQ(tree.GetNbLevels(), oracle.levels);
    ASSERT_EQ(tree.GetMaxNbLevels(), oracle.level_limit);
    ASSERT_TRUE(same_bits(tree.GetMinDiag(), oracle.min_diagonal));
    for (int k = 0; k < 12; ++k) {
      const OracleQuery q = some_query(cloud, random);
      const Answer answer = ask(tree, q);
      oracle.search(q);
      ASSERT_EQ(answer.found, oracle.found.size());
      ASSERT_EQ(tree.GetProbe(), oracle.probes);
      oracle.found.resize(answer.index.size());  // the rest is zero
      oracle.square.resize(answer.index.size());
      ASSERT_EQ(answer.index, oracle.found);
      ASSERT_NO_FATAL_FAILURE(zortest::expect_same_bits(oracle.square, answer.square));
      if (kind != zortest::not_finite && q.error == 0 && q.most_probes >= oracle.valid && q.self && oracle.valid > 0) {
        ASSERT_NO_FATAL_FAILURE(expect_promised(cloud, flags, q.at, answer.square));
      }
    }
  }
}

// Half of a node's rounded size is not the rounded size of its child there, and the nearest would be missed.
TEST(NeighborTree, RoundsTheSizesOfEveryLevelWhereTheyAreSubnormal) {
  constexpr double unit = std::numeric_limits<double>::denorm_min();
  const Cloud cloud{{0, 0, 0}, {1, 11 * unit, 0}, {0.125, 2 * unit, 0}};
  Tree tree;
  ASSERT_EQ(tree.Build(cloud.data(), 3, 1, nullptr, 1e-3, 40), 0);
  for (const Point& at : {Point{0.46875, 3 * unit, 0}, Point{0.375, unit, 0}}) {
    const Answer answer = ask(tree, {.at = at, .target = 1, .error = 0, .most_probes = 3, .self = true});
    EXPECT_EQ(answer.index[0], 2U);
    EXPECT_EQ(tree.GetProbe(), 3U);
  }
}

TEST(NeighborTree, RefusesFailsAndForgetsAsDocumented) {
  const Cloud cloud{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
  Tree tree;
  std::uint32_t found = 99;
  std::uint32_t index[3] = {7, 7, 7};
  double square[3] = {7, 7, 7};
  const auto query = [&](std::uint32_t k, std::uint32_t probes) {
    return tree.GetNeighbors(0, 0, 0, k, found, index, square, 0.5, probes, 1);
  };
  EXPECT_EQ(query(3, 3), 0);
  EXPECT_EQ(found, 0U) << "in an empty tree";
  ASSERT_EQ(tree.Build(cloud.data(), 3, 1, nullptr, 1e-3, 9), 0);
  found = 99;
  EXPECT_EQ(tree.GetNeighbors(0, 0, 0, 3, found, nullptr, square, 0, 3, 1), ZORSamStatusUnexpected);
  EXPECT_EQ(tree.GetNeighbors(0, 0, 0, 3, found, index, nullptr, 0, 3, 1), ZORSamStatusUnexpected);
  EXPECT_EQ(tree.GetNeighbors(0, 0, 0, 3, found, index, square, -0.5, 3, 1), ZORSamStatusUnexpected);
  EXPECT_EQ(found, 99U);
  EXPECT_EQ(query(0, 3), 0);
  EXPECT_EQ(query(3, 0), 0);
  EXPECT_EQ(index[0] + index[2], 14U) << "nothing was searched, nothing may be written";
  ASSERT_EQ(query(2, 9), 0);
  EXPECT_EQ(index[2], 7U);
  EXPECT_EQ(tree.GetMaxError(), 2.25);
  EXPECT_EQ(tree.GetTargetNb() + tree.GetMaxProbe() + tree.GetNbNeighbors(), 2U + 3U + 2U);
  tree.refused = 2;
  EXPECT_EQ(query(3, 9), Tree::refusal);
  EXPECT_EQ(found, 0U);
  EXPECT_EQ(index[0] + index[1] + index[2], 0U);
  EXPECT_EQ(square[0] + square[1] + square[2], 0.0);
  EXPECT_EQ(tree.GetIndexes(), nullptr);
  EXPECT_EQ(tree.GetMaxError(), 0);
  tree.refused = 3;
  ASSERT_EQ(query(3, 9), 0);
  ASSERT_EQ(tree.GetNeighbors(1, -2, 3, 1, found, index, square, 0.5, 3, 1), 0);
  double x = 0;
  double y = 0;
  double z = 0;
  tree.GetQueryPoint(x, y, z);
  EXPECT_TRUE(x == 1 && y == -2 && z == 3);
  tree.Reset();
  EXPECT_EQ(tree.GetSquareDists(), nullptr);
  EXPECT_EQ(tree.GetNbValidEntities(), 3U) << "the octree stays";
  tree.ZORSamOctree::Reset();
  EXPECT_EQ(tree.GetNbValidEntities(), 0U);
}

}  // namespace
