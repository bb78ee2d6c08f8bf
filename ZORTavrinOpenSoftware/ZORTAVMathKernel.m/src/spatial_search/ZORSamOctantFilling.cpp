// SPDX-License-Identifier: MIT
// A radix sort by child number, most significant digit first: one stable pass an octant, and then its children.
#include "spatial_search/ZORSamOctantFilling.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::uint32_t child_count = 8;

}  // namespace

// The range of the coordinates of a set of records; NaN, which sorts as the lowest number, counts as −∞.
struct ZORSamOctantFilling::Extent {
  static constexpr double infinity = std::numeric_limits<double>::infinity();
  std::array<double, 3> low{infinity, infinity, infinity};
  std::array<double, 3> high{-infinity, -infinity, -infinity};

  Extent(const Record* record, std::uint32_t n) {
    for (std::uint32_t i = 0; i < n; ++i) {
      Include(0, record[i].x);
      Include(1, record[i].y);
      Include(2, record[i].z);
    }
  }
  void Include(std::size_t axis, double at) {
    low[axis] = at >= low[axis] ? low[axis] : (at < low[axis] ? at : -infinity);
    high[axis] = at > high[axis] ? at : high[axis];
  }
};

std::int32_t ZORSamOctantFilling::FillLeaf(ZORSamOctree& tree, ZORSamOctant& octant, const Record* from,
                                           std::uint32_t n) {
  std::uint64_t capacity = tree.maxNbEntities_;
  while (capacity < n) {
    capacity *= 2;
  }
  if (capacity > std::numeric_limits<std::uint32_t>::max()) {
    return ZORSamStatusOutOfMemory;
  }
  octant.indexes_ = static_cast<std::uint32_t*>(std::calloc(capacity, sizeof(std::uint32_t)));
  if (octant.indexes_ == nullptr) {
    return ZORSamStatusOutOfMemory;
  }
  std::transform(from, from + n, octant.indexes_, [](const Record& record) { return record.index; });
  octant.capacity_ = static_cast<std::uint32_t>(capacity);
  octant.nbEntities_ = n;
  tree.nbLevels_ = std::max(tree.nbLevels_, octant.level_ + 1);
  return ZORSamStatusOk;
}

std::int32_t ZORSamOctantFilling::Fill(ZORSamOctree& tree, ZORSamOctant& octant, Record* from, Record* spare,
                                       std::uint32_t n, const Extent* known) {
  if (!Splits(tree, octant.level_, n)) {
    return FillLeaf(tree, octant, from, n);
  }
  octant.childs_ = new (std::nothrow) ZORSamOctant* [child_count] {};
  if (octant.childs_ == nullptr) {
    return ZORSamStatusOutOfMemory;
  }
  octant.nbEntities_ = n;

  // Entities that lie close together stay together for many levels: their extent tells so without a pass over them.
  if (known != nullptr) {
    const std::uint32_t child = octant.GetChildIndex(known->low[0], known->low[1], known->low[2]);
    if (child == octant.GetChildIndex(known->high[0], known->high[1], known->high[2])) {
      const std::int32_t status = octant.AddChild(octant.HalfSizes(child));
      return status < 0 ? status : Fill(tree, *octant.childs_[child], from, spare, n, known);
    }
  }
  std::array<std::uint32_t, child_count> count{};
  for (std::uint32_t i = 0; i < n; ++i) {
    from[i].child = octant.GetChildIndex(from[i].x, from[i].y, from[i].z);
    ++count[from[i].child];
  }
  if (count[from[0].child] == n) {
    const std::int32_t status = octant.AddChild(octant.HalfSizes(from[0].child));
    const Extent extent(from, n);
    return status < 0 ? status : Fill(tree, *octant.childs_[from[0].child], from, spare, n, &extent);
  }
  std::array<Record*, child_count> next{};
  Record* end = spare;
  for (std::uint32_t child = 0; child < child_count; ++child) {
    next[child] = end;
    end += count[child];
  }
  for (std::uint32_t i = 0; i < n; ++i) {
    *next[from[i].child]++ = from[i];
  }
  for (std::uint32_t child = 0; child < child_count; ++child) {
    if (count[child] > 0) {
      std::int32_t status = octant.AddChild(octant.HalfSizes(child));
      if (status >= 0) {
        status = Fill(tree, *octant.childs_[child], spare, from, count[child], nullptr);
      }
      if (status < 0) {
        return status;
      }
      spare += count[child];
      from += count[child];
    }
  }
  return ZORSamStatusOk;
}
