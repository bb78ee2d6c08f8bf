// SPDX-License-Identifier: MIT
// The root box is the bounding box of the entities that take part; the limit of levels is ⌊ln r / ln 4⌋ of the squared
// ratio r of its diagonal to the smallest one wanted.
#include "ZORSamOctree.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <new>

#include "spatial_search/ZORSamOctantFilling.h"
#include "spatial_search/octant_geometry.h"

namespace {

// x rounded toward 0, modulo 2^32; x >= 0. What no 64-bit number holds is a multiple of 2^32 anyway.
std::uint32_t wrapped(double x) {
  constexpr double two_to_64 = 0x1p64;
  return x < two_to_64 ? static_cast<std::uint32_t>(static_cast<std::uint64_t>(x)) : 0;
}

}  // namespace

ZORSamOctree::ZORSamOctree()
    : sizeX_(0),
      sizeY_(0),
      sizeZ_(0),
      minDiag_(0),
      root_(nullptr),
      data_(nullptr),
      flags_(nullptr),
      nbEntities_(0),
      maxNbEntities_(0),
      nbLevels_(0),
      maxNbLevels_(0) {}

ZORSamOctree::~ZORSamOctree() {
  Reset();
}

void ZORSamOctree::Reset() {
  sizeX_ = 0;
  sizeY_ = 0;
  sizeZ_ = 0;
  minDiag_ = 0;
  delete root_;
  root_ = nullptr;
  data_ = nullptr;
  flags_ = nullptr;
  nbEntities_ = 0;
  maxNbEntities_ = 0;
  nbLevels_ = 0;
  maxNbLevels_ = 0;
}

int32_t ZORSamOctree::CreateOctant(ZORSamOctant*& out) const {
  if (out != nullptr) {
    return ZORSamStatusUnexpected;
  }
  out = new (std::nothrow) ZORSamOctant;
  return out != nullptr ? ZORSamStatusOk : ZORSamStatusOutOfMemory;
}

int32_t ZORSamOctree::Build(const void* data, uint32_t nbEntities, uint32_t maxNbEntities, const unsigned char* flags,
                            double minDiag, uint32_t maxNbLevels) {
  if (data_ != nullptr || data == nullptr || maxNbEntities == 0 || minDiag <= 0) {
    return ZORSamStatusUnexpected;
  }
  minDiag_ = minDiag;
  flags_ = flags;
  data_ = data;
  nbEntities_ = nbEntities;
  maxNbEntities_ = maxNbEntities;
  maxNbLevels_ = maxNbLevels;

  uint32_t count = 0;
  int32_t status = InitRootAndSizes(count);
  if (status >= 0) {
    InitLimits();
    if (root_ == nullptr) {
      return ZORSamStatusOk;
    }
    status = AddAll(count);
  }
  if (status < 0) {
    Reset();
    return status;
  }
  return ZORSamStatusOk;
}

// count: the entities that take part.
int32_t ZORSamOctree::InitRootAndSizes(uint32_t& count) {
  constexpr double largest = std::numeric_limits<double>::max();
  std::array<double, 3> low{largest, largest, largest};
  std::array<double, 3> high{-largest, -largest, -largest};
  ZORSamOctinfo rec;
  for (uint32_t i = 0; i < nbEntities_; ++i) {
    if (!TakesPart(i)) {
      continue;
    }
    ++count;
    rec.index = i;
    const int32_t status = GetOctinfo(rec);
    if (status < 0) {
      return status;
    }
    const std::array<double, 3> at{rec.x, rec.y, rec.z};
    for (std::size_t axis = 0; axis < at.size(); ++axis) {
      low[axis] = at[axis] < low[axis] ? at[axis] : low[axis];
      high[axis] = at[axis] > high[axis] ? at[axis] : high[axis];
    }
  }
  if (count == 0) {
    return ZORSamStatusOk;
  }
  const int32_t status = CreateOctant(root_);
  if (status < 0) {
    return status;
  }
  if (root_ == nullptr) {
    return ZORSamStatusUnexpected;
  }
  sizeX_ = high[0] - low[0];
  sizeY_ = high[1] - low[1];
  sizeZ_ = high[2] - low[2];
  root_->Init(*this, {0, low[0] + sizeX_ / 2, low[1] + sizeY_ / 2, low[2] + sizeZ_ / 2});
  return ZORSamStatusOk;
}

void ZORSamOctree::InitLimits() {
  const double square = sizeX_ * sizeX_ + sizeY_ * sizeY_ + sizeZ_ * sizeZ_;
  const double ratio = square / (minDiag_ * minDiag_);
  if (ratio <= 1) {
    maxNbLevels_ = 0;
    minDiag_ = std::sqrt(square);
    return;
  }
  double levels = 0;
  if (!std::isnan(ratio)) {
    levels = std::isinf(ratio) ? zortav::deepest_level : std::floor(std::log(ratio) / std::log(4.0));
  }
  maxNbLevels_ = std::min(maxNbLevels_, static_cast<uint32_t>(levels));
  minDiag_ = square / std::pow(4.0, maxNbLevels_);
}

int32_t ZORSamOctree::AddAll(uint32_t count) {
  using Record = ZORSamOctantFilling::Record;
  const bool splits = ZORSamOctantFilling::Splits(*this, 0, count);
  const std::unique_ptr<Record[]> records(new (std::nothrow) Record[count]);
  const std::unique_ptr<Record[]> spare(splits ? new (std::nothrow) Record[count] : nullptr);
  if (!records || (splits && !spare)) {
    return AddOneByOne();
  }
  ZORSamOctinfo rec;
  uint32_t at = 0;
  for (uint32_t i = 0; i < nbEntities_; ++i) {
    if (TakesPart(i)) {
      rec.index = i;
      const int32_t status = GetOctinfo(rec);
      if (status < 0) {
        return status;
      }
      records[at++] = {rec.x, rec.y, rec.z, rec.index, 0};
    }
  }
  return ZORSamOctantFilling::Fill(*this, *root_, records.get(), spare.get(), count);
}

int32_t ZORSamOctree::AddOneByOne() {
  for (uint32_t i = 0; i < nbEntities_; ++i) {
    if (!TakesPart(i)) {
      continue;
    }
    ZORSamOctinfo rec;
    rec.index = i;
    int32_t status = GetOctinfo(rec);
    if (status >= 0) {
      status = root_->Add(rec);
    }
    if (status < 0) {
      return status;
    }
    nbLevels_ = std::max(nbLevels_, rec.index);
  }
  return ZORSamStatusOk;
}

void ZORSamOctree::GetBoundingBox(double& xmin, double& ymin, double& zmin, double& xmax, double& ymax,
                                  double& zmax) const {
  xmin = ymin = zmin = xmax = ymax = zmax = 0;
  if (root_ != nullptr) {
    xmin = root_->centreX_ - sizeX_ / 2;
    ymin = root_->centreY_ - sizeY_ / 2;
    zmin = root_->centreZ_ - sizeZ_ / 2;
    xmax = xmin + sizeX_;
    ymax = ymin + sizeY_;
    zmax = zmin + sizeZ_;
  }
}

void ZORSamOctree::GetCenter(double& x, double& y, double& z) const {
  x = root_ != nullptr ? root_->centreX_ : 0;
  y = root_ != nullptr ? root_->centreY_ : 0;
  z = root_ != nullptr ? root_->centreZ_ : 0;
}

void ZORSamOctree::GetSizes(double& x, double& y, double& z) const {
  x = sizeX_;
  y = sizeY_;
  z = sizeZ_;
}

uint32_t ZORSamOctree::GetNbValidEntities() const {
  return root_ != nullptr ? root_->nbEntities_ : 0;
}

uint32_t ZORSamOctree::GetLevelMaxNbOctants(uint32_t level) const {
  return wrapped(std::pow(8.0, level));
}

uint32_t ZORSamOctree::GetTreeMaxNbOctants(uint32_t level) const {
  return wrapped((std::pow(8.0, level) - 1) / 7);
}
