// SPDX-License-Identifier: MIT
// Sorts records of `width` integers by their key-th one: quicksort without recursion, the larger part always put off
// (C. A. R. Hoare, "Quicksort", The Computer Journal 5 (1962); R. Sedgewick, "Implementing quicksort programs",
// CACM 21 (1978)).
//
// The sort is not stable: where keys are equal, the rule for the pivot and the walk of the partition decide which
// record comes first, and callers see that. Both are fixed.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ZORTAVMatrixUtilities.h"

namespace zortav {
namespace {

using Position = std::int64_t;  // of a record, from 0

class RecordSort {
 public:
  RecordSort(std::int32_t* a, std::int32_t width, std::int32_t key, std::int32_t* work)
      : a_(a), work_(work), width_(width), key_(key - std::int64_t{1}) {}

  void sort(Position count) {
    Part part{0, count - 1};
    for (;;) {
      if (part.lo < part.hi) {
        part = partition(part);
      } else if (pending_count_ > 0) {
        part = pending_[--pending_count_];
      } else {
        return;
      }
    }
  }

 private:
  struct Part {
    Position lo;
    Position hi;
  };

  // Splits a part at its pivot, puts the larger side off and returns the other one.
  Part partition(Part part) {
    const Position split = split_at(part, next_pivot(part));
    const Part left{part.lo, split - 1};
    const Part right{split + 1, part.hi};
    const bool left_first = 2 * (split - part.lo) < part.hi - part.lo;
    pending_[pending_count_++] = left_first ? right : left;
    return left_first ? left : right;
  }

  // The middle, on every second step a quarter after or before it. The cycle runs over the steps of the whole sort.
  Position next_pivot(Part part) {
    constexpr std::array<Position, 4> quarters{0, 1, 0, -1};
    const Position span = part.hi - part.lo;
    return part.lo + span / 2 + quarters[step_++ % quarters.size()] * (span / 4);
  }

  // Moves the records with smaller keys before the pivot, those with larger keys behind it; returns where it ends up.
  Position split_at(Part part, Position pivot) {
    const std::int32_t pivot_key = key(pivot);
    Position left = part.lo;
    while (left < pivot && key(left) <= pivot_key) {
      ++left;
    }
    Position right = part.hi;
    while (right > pivot && key(right) >= pivot_key) {
      --right;
    }
    if (left == pivot && right == pivot) {
      return pivot;
    }
    copy(record(pivot), work_);
    if (left < pivot) {
      copy(record(left), record(pivot));
    }
    Position hole = left;
    while (hole < right) {
      if (key(right) <= pivot_key) {
        copy(record(right), record(hole));
        do {
          ++hole;  // past the record just copied, which is not compared again
        } while (hole < right && key(hole) < pivot_key);
        if (hole == right) {
          break;
        }
        copy(record(hole), record(right));
      }
      --right;
    }
    copy(work_, record(hole));
    return hole;
  }

  std::int32_t* record(Position r) const { return a_ + r * width_; }
  std::int32_t key(Position r) const { return record(r)[key_]; }
  void copy(const std::int32_t* from, std::int32_t* to) const {
    std::memcpy(to, from, static_cast<std::size_t>(width_) * sizeof *to);
  }

  // One for each halving of a 32-bit count would do.
  static constexpr std::size_t pending_limit = 64;

  std::int32_t* a_;
  std::int32_t* work_;
  std::int64_t width_;
  std::int64_t key_;
  std::size_t step_ = 0;
  std::size_t pending_count_ = 0;
  std::array<Part, pending_limit> pending_;
};

}  // namespace
}  // namespace zortav

void eaxsort(int32_t* a, const int32_t* width, const int32_t* count, const int32_t* key, int32_t* work) {
  zortav::RecordSort(a, *width, *key, work).sort(*count);
}
