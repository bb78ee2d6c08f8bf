// SPDX-License-Identifier: MIT
// One query: its state stands in the tree, the nodes search and fill it.
#include <algorithm>
#include <new>

#include "ZORSamOctree.h"

ZORSamNeighborTree::ZORSamNeighborTree()
    : queryX_(0),
      queryY_(0),
      queryZ_(0),
      maxError_(0),
      squareDists_(nullptr),
      indexes_(nullptr),
      nbNeighbors_(0),
      targetNb_(0),
      probe_(0),
      maxProbe_(0),
      allowSelf_(0) {}

ZORSamNeighborTree::~ZORSamNeighborTree() = default;

int32_t ZORSamNeighborTree::CreateOctant(ZORSamOctant*& out) const {
  if (out != nullptr) {
    return ZORSamStatusUnexpected;
  }
  out = new (std::nothrow) ZORSamNeighborNode;
  return out != nullptr ? ZORSamStatusOk : ZORSamStatusOutOfMemory;
}

void ZORSamNeighborTree::Reset() {
  queryX_ = 0;
  queryY_ = 0;
  queryZ_ = 0;
  maxError_ = 0;
  squareDists_ = nullptr;
  indexes_ = nullptr;
  nbNeighbors_ = 0;
  targetNb_ = 0;
  probe_ = 0;
  maxProbe_ = 0;
  allowSelf_ = 0;
}

int32_t ZORSamNeighborTree::GetNeighbors(double x, double y, double z, uint32_t targetNb, uint32_t& nbFound,
                                         uint32_t* const indexes, double* const squareDists, double maxError,
                                         uint32_t maxProbe, unsigned char allowSelf) {
  if (indexes == nullptr || squareDists == nullptr || maxError < 0) {
    return ZORSamStatusUnexpected;
  }
  queryX_ = x;
  queryY_ = y;
  queryZ_ = z;
  maxError_ = (1 + maxError) * (1 + maxError);
  squareDists_ = squareDists;
  indexes_ = indexes;
  nbFound = 0;
  nbNeighbors_ = 0;
  targetNb_ = std::min(targetNb, GetNbValidEntities());
  probe_ = 0;
  maxProbe_ = std::min(maxProbe, GetNbValidEntities());
  allowSelf_ = allowSelf;
  if (root_ == nullptr || targetNb_ == 0 || maxProbe_ == 0) {
    return ZORSamStatusOk;
  }
  ClearResults();
  ZORSamOctinfo rec;
  const int32_t status = static_cast<const ZORSamNeighborNode*>(root_)->GetNeighbors(rec);
  if (status < 0) {
    ClearResults();
    Reset();
  }
  nbFound = nbNeighbors_;
  return status;
}

void ZORSamNeighborTree::ClearResults() {
  std::fill_n(indexes_, targetNb_, 0U);
  std::fill_n(squareDists_, targetNb_, 0.0);
}

void ZORSamNeighborTree::GetQueryPoint(double& x, double& y, double& z) const {
  x = queryX_;
  y = queryY_;
  z = queryZ_;
}
