// SPDX-License-Identifier: MIT
// The search below one node: the child on the query's side first, then every sibling that is near enough.
#include <algorithm>
#include <array>

#include "ZORSamOctree.h"
#include "spatial_search/neighbor_insertion.h"
#include "spatial_search/octant_geometry.h"

namespace {

constexpr std::uint32_t child_count = 8;
constexpr std::uint32_t fetched_at_once = 16;

// How far the query lies outside a slab, squared.
struct Slab {
  bool outside;
  double square;

  Slab(double centre, double reach, double query) {
    const double low = centre - reach;
    const double high = centre + reach;
    outside = low > query || query > high;
    const double distance = low > query ? low - query : query - high;
    square = distance * distance;
  }
  double or_else(double before) const { return outside ? square : before; }
};

// The slabs of the lower and the upper children of a node of this size.
std::array<Slab, 2> slabs(double centre, double size, double query) {
  const double half = size * 0.5;
  return {Slab(zortav::child_centre(centre, half, false), half / 2, query),
          Slab(zortav::child_centre(centre, half, true), half / 2, query)};
}

}  // namespace

ZORSamNeighborNode::ZORSamNeighborNode() = default;

ZORSamNeighborNode::~ZORSamNeighborNode() = default;

// The distance of an axis counts again on the next ones where the query lies inside their slabs: approximate searches
// are to find what they always found. The children share two slabs an axis, so none of them need be looked at. The
// terms are not negative: where the sum is below a bound, so is every partial sum.
std::array<double, 8> ZORSamNeighborNode::ChildDistances(const ZORSamNeighborTree& tree) const {
  const double scale = zortav::level_scale(level_);
  const std::array<Slab, 2> x = slabs(centreX_, tree.sizeX_ * scale, tree.queryX_);
  const std::array<Slab, 2> y = slabs(centreY_, tree.sizeY_ * scale, tree.queryY_);
  const std::array<Slab, 2> z = slabs(centreZ_, tree.sizeZ_ * scale, tree.queryZ_);
  std::array<double, child_count> distance;
  for (std::uint32_t xy = 0; xy < 4; ++xy) {
    const double of_x = x[xy & 1U].or_else(0.0);
    const double of_y = y[xy >> 1].or_else(of_x);
    distance[xy] = of_x + of_y + z[0].or_else(of_y);
    distance[xy + 4] = of_x + of_y + z[1].or_else(of_y);
  }
  return distance;
}

int32_t ZORSamNeighborNode::GetNeighbors(ZORSamOctinfo& rec) const {
  if (IsLeaf()) {
    return CollectNeighbors(rec);
  }
  if (tree_ == nullptr) {
    return ZORSamStatusUnexpected;
  }
  const auto& tree = static_cast<const ZORSamNeighborTree&>(*tree_);
  const auto search = [this, &rec](uint32_t child) {
    const auto* node = static_cast<const ZORSamNeighborNode*>(childs_[child]);
    return node->IsLeaf() ? node->CollectNeighbors(rec) : node->GetNeighbors(rec);
  };
  int32_t status = ZORSamStatusOk;
  const uint32_t own = GetChildIndex(tree.queryX_, tree.queryY_, tree.queryZ_);
  if (childs_[own] != nullptr) {
    status = search(own);
    if (status < 0) {
      return status;
    }
  }
  if (tree.probe_ >= tree.maxProbe_) {
    return status;
  }
  const std::array<double, child_count> distance = ChildDistances(tree);
  double reach = tree.GetMaxSquareDist() / tree.maxError_;
  for (uint32_t child = 0; child < child_count; ++child) {
    const bool close = tree.nbNeighbors_ < tree.targetNb_ || distance[child] < reach;
    if (!close || child == own || childs_[child] == nullptr) {
      continue;
    }
    status = search(child);
    if (status < 0 || tree.probe_ >= tree.maxProbe_) {
      break;
    }
    reach = tree.GetMaxSquareDist() / tree.maxError_;
  }
  return status;
}

int32_t ZORSamNeighborNode::CollectNeighbors(ZORSamOctinfo& rec) const {
  auto& tree = static_cast<ZORSamNeighborTree&>(*tree_);
  const double qx = tree.queryX_;
  const double qy = tree.queryY_;
  const double qz = tree.queryZ_;
  std::array<double, fetched_at_once> after_x;
  std::array<double, fetched_at_once> after_y;
  std::array<double, fetched_at_once> after_z;
  for (uint32_t first = 0; first < nbEntities_ && tree.probe_ < tree.maxProbe_; first += fetched_at_once) {
    // All coordinates of a group are asked for before the first is judged: their loads overlap.
    const uint32_t n = std::min({nbEntities_ - first, fetched_at_once, tree.maxProbe_ - tree.probe_});
    for (uint32_t i = 0; i < n; ++i) {
      rec.index = indexes_[first + i];
      const int32_t status = tree.GetOctinfo(rec);
      if (status < 0) {
        return status;
      }
      const double dx = rec.x - qx;
      const double dy = rec.y - qy;
      const double dz = rec.z - qz;
      after_x[i] = dx * dx;
      after_y[i] = after_x[i] + dy * dy;
      after_z[i] = after_y[i] + dz * dz;
    }
    for (uint32_t i = 0; i < n; ++i) {
      tree.IncreaseProbe();
      if (tree.nbNeighbors_ >= tree.targetNb_) {
        const double worst = tree.GetMaxSquareDist();
        // Where no sum is NaN the last comparison decides; a partial sum rejects in spite of a NaN after it.
        if (after_z[i] >= worst || after_x[i] >= worst || after_y[i] >= worst) {
          continue;
        }
      }
      if (tree.allowSelf_ != 0 || after_z[i] != 0) {
        tree.InsertNeighbor(after_z[i], indexes_[first + i]);
      }
    }
  }
  return ZORSamStatusOk;
}
