// SPDX-License-Identifier: MIT
// Fills an octant with many entities at once. The octree is the one that inserting them one by one makes: an octant
// splits exactly when it receives more than maxNbEntities and the limit of levels allows, and every leaf lists its
// entities in the order in which they come.
#pragma once

#include <cstdint>

#include "ZORSamOctree.h"

class ZORSamOctantFilling {
 public:
  struct Record {
    double x;
    double y;
    double z;
    std::uint32_t index;
    std::uint32_t child;  // work space
  };

  // Whether an octant of this level, holding n entities, is an inner one.
  static bool Splits(const ZORSamOctree& tree, std::uint32_t level, std::uint32_t n) {
    return n > tree.maxNbEntities_ && level + 1 < tree.maxNbLevels_;
  }

  // octant: initialised and empty. from and spare: n records each, both overwritten where the octant splits; spare may
  // be null where it does not. On a failure the octant holds a part of its subtree.
  static std::int32_t Fill(ZORSamOctree& tree, ZORSamOctant& octant, Record* from, Record* spare, std::uint32_t n) {
    return Fill(tree, octant, from, spare, n, nullptr);
  }

 private:
  struct Extent;
  static std::int32_t Fill(ZORSamOctree& tree, ZORSamOctant& octant, Record* from, Record* spare, std::uint32_t n,
                           const Extent* known);
  static std::int32_t FillLeaf(ZORSamOctree& tree, ZORSamOctant& octant, const Record* from, std::uint32_t n);
};
