// SPDX-License-Identifier: MIT
// One entity at a time: down to its leaf, which splits when it is full and the limit of levels allows.
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

#include "ZORSamOctree.h"
#include "spatial_search/octant_geometry.h"

namespace {

constexpr std::uint32_t child_count = 8;

}  // namespace

ZORSamOctant::ZORSamOctant()
    : centreX_(0),
      centreY_(0),
      centreZ_(0),
      tree_(nullptr),
      childs_(nullptr),
      indexes_(nullptr),
      nbEntities_(0),
      capacity_(0),
      level_(0) {}

ZORSamOctant::~ZORSamOctant() {
  Reset();
}

void ZORSamOctant::Init(ZORSamOctree& tree, const ZORSamOctinfo& rec) {
  tree_ = &tree;
  centreX_ = rec.x;
  centreY_ = rec.y;
  centreZ_ = rec.z;
  level_ = rec.index;
}

void ZORSamOctant::Reset() {
  centreX_ = 0;
  centreY_ = 0;
  centreZ_ = 0;
  tree_ = nullptr;
  if (childs_ != nullptr) {
    std::for_each_n(childs_, child_count, [](ZORSamOctant* child) { delete child; });
    delete[] childs_;
    childs_ = nullptr;
  }
  std::free(indexes_);
  indexes_ = nullptr;
  nbEntities_ = 0;
  capacity_ = 0;
  level_ = 0;
}

void ZORSamOctant::GetSizes(double& x, double& y, double& z) const {
  if (tree_ == nullptr) {
    x = y = z = 0;
    return;
  }
  const double scale = zortav::level_scale(level_);
  x = tree_->sizeX_ * scale;
  y = tree_->sizeY_ * scale;
  z = tree_->sizeZ_ * scale;
}

void ZORSamOctant::GetBoundingBox(double& xmin, double& ymin, double& zmin, double& xmax, double& ymax,
                                  double& zmax) const {
  double x = 0;
  double y = 0;
  double z = 0;
  GetSizes(x, y, z);
  xmin = centreX_ - x / 2;
  ymin = centreY_ - y / 2;
  zmin = centreZ_ - z / 2;
  xmax = centreX_ + x / 2;
  ymax = centreY_ + y / 2;
  zmax = centreZ_ + z / 2;
}

ZORSamOctinfo ZORSamOctant::HalfSizes(uint32_t child) const {
  const double scale = zortav::level_scale(level_);
  return {child, tree_->sizeX_ * scale * 0.5, tree_->sizeY_ * scale * 0.5, tree_->sizeZ_ * scale * 0.5};
}

int32_t ZORSamOctant::Add(ZORSamOctinfo& rec) {
  if (tree_ == nullptr) {
    return ZORSamStatusUnexpected;
  }
  int32_t status = ZORSamStatusOk;
  if (childs_ == nullptr) {
    const bool full = nbEntities_ >= tree_->maxNbEntities_;
    if (!full || level_ + 1 >= tree_->maxNbLevels_) {
      status = AddIndex(rec.index);
      rec.index = level_ + 1;
      return status;
    }
    status = Split();
  }
  if (status >= 0) {
    status = AddToChild(rec);
  }
  if (status < 0) {
    Reset();
    return status;
  }
  ++nbEntities_;
  return ZORSamStatusOk;
}

int32_t ZORSamOctant::AddToChild(ZORSamOctinfo& rec) {
  const uint32_t child = GetChildIndex(rec.x, rec.y, rec.z);
  if (childs_[child] == nullptr) {
    const int32_t status = AddChild(HalfSizes(child));
    if (status < 0) {
      return status;
    }
  }
  return childs_[child]->Add(rec);
}

// Hands the entities of a leaf down. A child that receives them all does not split before its own next entity.
int32_t ZORSamOctant::Split() {
  childs_ = new (std::nothrow) ZORSamOctant* [child_count] {};
  if (childs_ == nullptr) {
    return ZORSamStatusOutOfMemory;
  }
  for (uint32_t i = 0; i < nbEntities_; ++i) {
    ZORSamOctinfo rec;
    rec.index = indexes_[i];
    int32_t status = tree_->GetOctinfo(rec);
    if (status < 0) {
      return status;
    }
    const uint32_t child = GetChildIndex(rec.x, rec.y, rec.z);
    if (childs_[child] == nullptr) {
      status = AddChild(HalfSizes(child));
    }
    if (status >= 0) {
      status = childs_[child]->AddIndex(indexes_[i]);
    }
    if (status < 0) {
      return status;
    }
  }
  std::free(indexes_);
  indexes_ = nullptr;
  capacity_ = 0;
  return ZORSamStatusOk;
}

int32_t ZORSamOctant::AddChild(const ZORSamOctinfo& half) {
  ZORSamOctant* child = nullptr;
  const int32_t status = tree_->CreateOctant(child);
  if (status < 0) {
    delete child;
    return status;
  }
  if (child == nullptr) {
    return ZORSamStatusUnexpected;
  }
  child->Init(*tree_, {level_ + 1, zortav::child_centre(centreX_, half.x, (half.index & 1U) != 0),
                       zortav::child_centre(centreY_, half.y, (half.index & 2U) != 0),
                       zortav::child_centre(centreZ_, half.z, (half.index & 4U) != 0)});
  childs_[half.index] = child;
  return ZORSamStatusOk;
}

int32_t ZORSamOctant::AddIndex(uint32_t index) {
  if (nbEntities_ == capacity_) {
    const std::uint64_t length = capacity_ == 0 ? tree_->maxNbEntities_ : 2 * std::uint64_t{capacity_};
    if (length == 0 || length > std::numeric_limits<uint32_t>::max()) {
      return ZORSamStatusOutOfMemory;
    }
    // The C allocator does not touch the pages of a capacity that is never used.
    auto* grown = static_cast<uint32_t*>(std::calloc(length, sizeof(uint32_t)));
    if (grown == nullptr) {
      return ZORSamStatusOutOfMemory;
    }
    std::copy_n(indexes_, nbEntities_, grown);
    std::free(indexes_);
    indexes_ = grown;
    capacity_ = static_cast<uint32_t>(length);
  }
  indexes_[nbEntities_++] = index;
  return ZORSamStatusOk;
}
