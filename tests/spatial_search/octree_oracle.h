// SPDX-License-Identifier: MIT
// The rules of the octree and of its search, one step after the other and without a thought for speed.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "spatial_search/clouds.h"

namespace zortest {

struct OracleNode {
  Point centre{};
  std::uint32_t level = 0;
  std::uint32_t entities = 0;
  std::uint32_t capacity = 0;
  std::vector<std::uint32_t> index;
  std::array<std::unique_ptr<OracleNode>, 8> child;
  bool leaf = true;
};

struct OracleQuery {
  Point at{};
  std::uint32_t target = 0;
  double error = 0;
  std::uint32_t most_probes = 0;
  bool self = true;
};

class OctreeOracle {
 public:
  OctreeOracle(const Cloud& cloud, std::uint32_t capacity, const unsigned char* flags, double diagonal,
               std::uint32_t most_levels)
      : cloud_(cloud), capacity_(capacity), min_diagonal(diagonal), level_limit(most_levels) {
    constexpr double largest = std::numeric_limits<double>::max();
    Point low{largest, largest, largest};
    Point high{-largest, -largest, -largest};
    const auto takes_part = [flags](std::size_t i) { return flags == nullptr || flags[i] != 0; };
    for (std::size_t i = 0; i < cloud.size(); ++i) {
      for (std::size_t a = 0; takes_part(i) && a < 3; ++a) {
        low[a] = cloud[i][a] < low[a] ? cloud[i][a] : low[a];
        high[a] = cloud[i][a] > high[a] ? cloud[i][a] : high[a];
      }
      valid += takes_part(i) ? 1 : 0;
    }
    if (valid > 0) {
      root = std::make_unique<OracleNode>();
      for (std::size_t a = 0; a < 3; ++a) {
        size[a] = high[a] - low[a];
        root->centre[a] = low[a] + size[a] / 2;
      }
    }
    limit_levels();
    for (std::size_t i = 0; i < cloud.size(); ++i) {
      if (takes_part(i)) {
        levels = std::max(levels, add(*root, static_cast<std::uint32_t>(i)));
      }
    }
  }

  void box(const OracleNode& node, Point& low, Point& high) const {
    for (std::size_t a = 0; a < 3; ++a) {
      const double length = size[a] / std::pow(2, node.level);
      low[a] = node.centre[a] - length / 2;
      high[a] = node.centre[a] + length / 2;
    }
  }

  void search(const OracleQuery& query) {
    query_ = query;
    query_.target = std::min(query.target, valid);
    query_.most_probes = std::min(query.most_probes, valid);
    factor_ = (1 + query.error) * (1 + query.error);
    probes = 0;
    square.clear();
    found.clear();
    if (root && query_.target > 0 && query_.most_probes > 0) {
      search(*root);
    }
  }

 private:
  const Cloud& cloud_;
  std::uint32_t capacity_;
  OracleQuery query_;
  double factor_ = 1;

 public:
  Point size{};
  double min_diagonal;
  std::uint32_t level_limit;
  std::uint32_t levels = 0;
  std::uint32_t valid = 0;
  std::unique_ptr<OracleNode> root;
  std::uint32_t probes = 0;
  std::vector<double> square;
  std::vector<std::uint32_t> found;

 private:
  void limit_levels() {
    const double d2 = size[0] * size[0] + size[1] * size[1] + size[2] * size[2];
    const double r = d2 / (min_diagonal * min_diagonal);
    if (r <= 1) {
      level_limit = 0;
      min_diagonal = std::sqrt(d2);
      return;
    }
    const double l = r == inf ? 512 : std::log(r) / std::log(4.0);
    level_limit = l < level_limit ? static_cast<std::uint32_t>(l) : level_limit;
    min_diagonal = d2 / std::pow(4, level_limit);
  }
  static std::size_t child_of(const OracleNode& node, const Point& p) {
    return (p[0] > node.centre[0] ? 1U : 0U) + (p[1] > node.centre[1] ? 2U : 0U) + (p[2] > node.centre[2] ? 4U : 0U);
  }
  OracleNode& child(OracleNode& node, const Point& p) const {
    const std::size_t c = child_of(node, p);
    if (!node.child[c]) {
      node.child[c] = std::make_unique<OracleNode>();
      node.child[c]->level = node.level + 1;
      for (std::size_t a = 0; a < 3; ++a) {
        const double half = size[a] / std::pow(2, node.level) * 0.5;
        const double lower = node.centre[a] - half / 2;
        node.child[c]->centre[a] = (c >> a & 1U) != 0 ? lower + half : lower;
      }
    }
    return *node.child[c];
  }
  void append(OracleNode& node, std::uint32_t i) const {
    node.capacity = node.entities < node.capacity ? node.capacity : std::max(2 * node.capacity, capacity_);
    node.index.push_back(i);
    ++node.entities;
  }
  // The depth reached.
  std::uint32_t add(OracleNode& node, std::uint32_t i) {
    if (node.leaf && !(node.entities + 1 > capacity_ && node.level + 1 < level_limit)) {
      append(node, i);
      return node.level + 1;
    }
    if (node.leaf) {
      for (const std::uint32_t old : node.index) {
        append(child(node, cloud_[old]), old);
      }
      node.index.clear();
      node.capacity = 0;
      node.leaf = false;
    }
    ++node.entities;
    return add(child(node, cloud_[i]), i);
  }

  double worst() const { return square.empty() ? 0 : square.back(); }
  bool close_enough(const OracleNode& node) const {
    if (square.size() < query_.target) {
      return true;
    }
    const double reach = worst() / factor_;
    Point low{};
    Point high{};
    box(node, low, high);
    double t = 0;
    double s = 0;
    for (std::size_t a = 0; a < 3; ++a) {
      if (low[a] > query_.at[a]) {
        t = low[a] - query_.at[a];
      } else if (query_.at[a] > high[a]) {
        t = query_.at[a] - high[a];
      }
      s += t * t;
      if (a < 2 && s >= reach) {
        return false;
      }
    }
    return s < reach;
  }
  void search(const OracleNode& node) {
    if (node.leaf) {
      collect(node);
      return;
    }
    const std::size_t own = child_of(node, query_.at);
    if (node.child[own]) {
      search(*node.child[own]);
    }
    for (std::size_t c = 0; c < 8 && probes < query_.most_probes; ++c) {
      if (c != own && node.child[c] && close_enough(*node.child[c])) {
        search(*node.child[c]);
      }
    }
  }
  void collect(const OracleNode& node) {
    for (const std::uint32_t i : node.index) {
      if (probes >= query_.most_probes) {
        return;
      }
      ++probes;
      double d = 0;
      bool rejected = false;
      for (std::size_t a = 0; a < 3 && !rejected; ++a) {
        d += (cloud_[i][a] - query_.at[a]) * (cloud_[i][a] - query_.at[a]);
        rejected = square.size() >= query_.target && d >= worst();
      }
      if (!rejected && (query_.self || d != 0)) {
        insert(d, i);
      }
    }
  }
  void insert(double d, std::uint32_t i) {
    std::ptrdiff_t place = 0;
    if (!square.empty()) {
      std::size_t low = 0;
      std::size_t high = square.size() - 1;
      std::size_t middle = (low + high) / 2;
      while (square[middle] != d && low != high) {
        (square[middle] > d ? high : low) = square[middle] > d ? middle : middle + 1;
        middle = (low + high) / 2;
      }
      place = static_cast<std::ptrdiff_t>(middle) + (d >= square[middle] ? 1 : 0);
    }
    if (place < static_cast<std::ptrdiff_t>(query_.target)) {
      square.insert(square.begin() + place, d);
      found.insert(found.begin() + place, i);
      square.resize(std::min<std::size_t>(square.size(), query_.target));
      found.resize(square.size());
    }
  }
};

inline void expect_same_octree(const OctreeOracle& oracle, const OracleNode* expected, const ZORSamOctant* actual) {
  ASSERT_EQ(expected == nullptr, actual == nullptr);
  if (expected == nullptr) {
    return;
  }
  Point low{};
  Point high{};
  Point oracle_low{};
  Point oracle_high{};
  actual->GetBoundingBox(low[0], low[1], low[2], high[0], high[1], high[2]);
  oracle.box(*expected, oracle_low, oracle_high);
  for (std::size_t a = 0; a < 3; ++a) {
    ASSERT_TRUE(same_bits(low[a], oracle_low[a]) && same_bits(high[a], oracle_high[a])) << "axis " << a;
  }
  ASSERT_EQ(actual->GetLevel(), expected->level);
  ASSERT_EQ(actual->GetNbEntities(), expected->entities);
  ASSERT_EQ(actual->GetCapacity(), expected->capacity);
  ASSERT_EQ(actual->IsLeaf(), expected->leaf);
  if (expected->leaf) {
    std::vector<std::uint32_t> index = expected->index;
    index.resize(expected->capacity);
    ASSERT_EQ(std::vector<std::uint32_t>(actual->GetIndexes(), actual->GetIndexes() + index.size()), index);
    return;
  }
  ASSERT_EQ(actual->GetIndexes(), nullptr);
  for (std::size_t c = 0; c < 8; ++c) {
    expect_same_octree(oracle, expected->child[c].get(), actual->GetChilds()[c]);
  }
}

}  // namespace zortest
