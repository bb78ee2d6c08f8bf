// SPDX-License-Identifier: MIT
// The rules of the octree and of its search, without a tree and without a thought for speed: what is in a cell decides
// what becomes of it.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "spatial_search/clouds.h"

namespace zortest {

struct Cell {
  Point centre{};
  std::uint32_t level = 0;
  std::vector<std::uint32_t> index = {};
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
      : min_diagonal(diagonal), level_limit(most_levels), cloud_(cloud), capacity_(capacity) {
    constexpr double largest = std::numeric_limits<double>::max();
    Point low{largest, largest, largest};
    Point high{-largest, -largest, -largest};
    for (std::uint32_t i = 0; i < cloud.size(); ++i) {
      if (flags == nullptr || flags[i] != 0) {
        root.index.push_back(i);
        for (std::size_t a = 0; a < 3; ++a) {
          low[a] = cloud[i][a] < low[a] ? cloud[i][a] : low[a];
          high[a] = cloud[i][a] > high[a] ? cloud[i][a] : high[a];
        }
      }
    }
    valid = static_cast<std::uint32_t>(root.index.size());
    for (std::size_t a = 0; a < 3 && valid > 0; ++a) {
      size[a] = high[a] - low[a];
      root.centre[a] = low[a] + size[a] / 2;
    }
    limit_levels();
  }

  // Everything from the root on; levels are those of the tree then.
  void expect_same(const ZORSamOctant* actual) {
    ASSERT_EQ(actual != nullptr, valid > 0);
    levels = 0;
    if (actual != nullptr) {
      expect_same(root, *actual);
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
    if (query_.target > 0 && query_.most_probes > 0) {
      search(root);
    }
  }

  Point size{};
  double min_diagonal;
  std::uint32_t level_limit;
  std::uint32_t levels = 0;
  std::uint32_t valid = 0;
  Cell root;
  std::uint32_t probes = 0;
  std::vector<double> square;
  std::vector<std::uint32_t> found;

 private:
  const Cloud& cloud_;
  std::uint32_t capacity_;
  OracleQuery query_;
  double factor_ = 1;

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

  bool is_leaf(const Cell& cell) const { return cell.index.size() <= capacity_ || cell.level + 1 >= level_limit; }
  void box(const Cell& cell, Point& low, Point& high) const {
    for (std::size_t a = 0; a < 3; ++a) {
      const double length = size[a] / std::pow(2, cell.level);
      low[a] = cell.centre[a] - length / 2;
      high[a] = cell.centre[a] + length / 2;
    }
  }
  static std::size_t child_of(const Cell& cell, const Point& p) {
    return (p[0] > cell.centre[0] ? 1U : 0U) + (p[1] > cell.centre[1] ? 2U : 0U) + (p[2] > cell.centre[2] ? 4U : 0U);
  }
  Cell child(const Cell& cell, std::size_t c) const {
    Cell part{.level = cell.level + 1};
    for (std::size_t a = 0; a < 3; ++a) {
      const double half = size[a] / std::pow(2, cell.level) * 0.5;
      const double lower = cell.centre[a] - half / 2;
      part.centre[a] = (c >> a & 1U) != 0 ? lower + half : lower;
    }
    for (const std::uint32_t i : cell.index) {
      if (child_of(cell, cloud_[i]) == c) {
        part.index.push_back(i);
      }
    }
    return part;
  }

  void expect_same(const Cell& cell, const ZORSamOctant& actual) {
    Point low{}, high{}, expected_low{}, expected_high{};
    actual.GetBoundingBox(low[0], low[1], low[2], high[0], high[1], high[2]);
    box(cell, expected_low, expected_high);
    for (std::size_t a = 0; a < 3; ++a) {
      ASSERT_TRUE(same_bits(low[a], expected_low[a]) && same_bits(high[a], expected_high[a])) << "axis " << a;
    }
    levels = std::max(levels, cell.level + 1);
    ASSERT_EQ(actual.GetLevel(), cell.level);
    ASSERT_EQ(actual.GetNbEntities(), cell.index.size());
    ASSERT_EQ(actual.IsLeaf(), is_leaf(cell));
    if (is_leaf(cell)) {
      std::uint32_t capacity = capacity_;
      while (capacity < cell.index.size()) {
        capacity *= 2;
      }
      ASSERT_EQ(actual.GetCapacity(), capacity);
      std::vector<std::uint32_t> index = cell.index;
      index.resize(capacity);  // the rest is zero
      ASSERT_EQ(std::vector<std::uint32_t>(actual.GetIndexes(), actual.GetIndexes() + capacity), index);
      return;
    }
    ASSERT_EQ(actual.GetCapacity(), 0U);
    ASSERT_EQ(actual.GetIndexes(), nullptr);
    for (std::size_t c = 0; c < 8; ++c) {
      const Cell part = child(cell, c);
      const ZORSamOctant* const octant = actual.GetChilds()[c];
      ASSERT_EQ(octant == nullptr, part.index.empty());
      if (octant != nullptr) {
        ASSERT_NO_FATAL_FAILURE(expect_same(part, *octant));
      }
    }
  }

  double worst() const { return square.empty() ? 0 : square.back(); }
  bool close_enough(const Cell& cell) const {
    if (square.size() < query_.target) {
      return true;
    }
    const double reach = worst() / factor_;
    Point low{}, high{};
    box(cell, low, high);
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
  void search(const Cell& cell) {
    if (is_leaf(cell)) {
      collect(cell);
      return;
    }
    const std::size_t own = child_of(cell, query_.at);
    if (const Cell part = child(cell, own); !part.index.empty()) {
      search(part);
    }
    for (std::size_t c = 0; c < 8 && probes < query_.most_probes; ++c) {
      const Cell part = child(cell, c);
      if (c != own && !part.index.empty() && close_enough(part)) {
        search(part);
      }
    }
  }
  void collect(const Cell& cell) {
    for (const std::uint32_t i : cell.index) {
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

}  // namespace zortest
