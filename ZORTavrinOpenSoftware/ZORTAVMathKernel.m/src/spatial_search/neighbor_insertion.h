// SPDX-License-Identifier: MIT
// The sorted list of the neighbours found so far. Here rather than beside the tree, so that the search of a leaf has it
// inline.
#pragma once

#include <algorithm>

#include "ZORSamOctree.h"

// Where bisection ends: at the first equal distance that it meets, else beside the place.
inline uint32_t ZORSamNeighborTree::FindPosition(double sqDist) const {
  if (nbNeighbors_ == 0) {
    return 0;
  }
  uint32_t low = 0;
  uint32_t high = nbNeighbors_ - 1;
  for (;;) {
    const uint32_t middle = low + (high - low) / 2;
    if (squareDists_[middle] == sqDist || low == high) {
      return middle;
    }
    if (squareDists_[middle] > sqDist) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
}

// The new count.
inline uint32_t ZORSamNeighborTree::InsertNeighbor(double sqDist, uint32_t index) {
  uint32_t place = FindPosition(sqDist);
  if (nbNeighbors_ > 0 && sqDist >= squareDists_[place]) {
    ++place;
  }
  if (place >= targetNb_) {
    return nbNeighbors_;
  }
  const uint32_t count = std::min(nbNeighbors_ + 1, targetNb_);
  std::copy_backward(squareDists_ + place, squareDists_ + count - 1, squareDists_ + count);
  std::copy_backward(indexes_ + place, indexes_ + count - 1, indexes_ + count);
  squareDists_[place] = sqDist;
  indexes_[place] = index;
  nbNeighbors_ = count;
  return count;
}
