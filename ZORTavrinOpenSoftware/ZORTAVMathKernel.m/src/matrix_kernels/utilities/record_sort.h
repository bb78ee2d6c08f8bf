// SPDX-License-Identifier: MIT
// The quicksort of eaxsort for records of a fixed or of any width: the split that eaxsort's header documents, record by
// record, without a branch on a key.
//
// The walk of a split takes records with keys <= the pivot's from the right and records with keys >= the pivot's from
// the left in turn, until the two meet. Which ones these are is found out before any is moved: a bit for each record of
// a block of 64, set by a comparison (S. Edelkamp, A. Weiß, "BlockQuicksort", ESA 2016). The bits of the left blocks
// begin with the leftmost record, those of the right ones with the rightmost, so that the next one is always the lowest.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "matrix_kernels/utilities/small_sorts.h"

namespace zortav {

using Position = std::int64_t;  // of a record, from 0

// Width integers a record; 0: as many as the caller says.
template <std::int32_t Width>
class RecordSort {
 public:
  RecordSort(std::int32_t* a, std::int32_t width, std::int32_t key, std::int32_t* work)
      : a_(a), work_(work), width_(width), key_(key - std::int64_t{1}) {}

  void sort(Position count) {
    Part part{0, count - 1};
    for (;;) {
      while (part.lo < part.hi) {
        part = partition(part);
      }
      if (pending_count_ == 0) {
        return;
      }
      part = pending_[--pending_count_];
    }
  }

 private:
  struct Part {
    Position lo;
    Position hi;
  };
  struct FixedRecord {
    std::array<std::int32_t, std::max(Width, decltype(Width){1})> integers;
  };

  static constexpr Position block = 64;
  static constexpr std::int64_t beyond_all_keys = std::int64_t{1} << 32;

  // Splits a part at its pivot, puts the larger side off and returns the other one.
  Part partition(Part part) {
    const Position span = part.hi - part.lo;
    if constexpr (Width != 0) {
      if (span < small_sort_limit && sort_few(part)) {
        return {0, 0};
      }
    }
    const Position pivot = next_pivot(part.lo, span);
    const Position split = span < block ? split_block(part, pivot) : split_blocks(part, pivot);
    const Part left{part.lo, split - 1};
    const Part right{split + 1, part.hi};
    const bool left_first = 2 * (split - part.lo) < span;
    const Part later = left_first ? right : left;
    pending_[pending_count_] = later;
    pending_count_ += later.lo < later.hi ? 1 : 0;
    return left_first ? left : right;
  }

  // The middle, on every second step a quarter after or before it. The cycle runs over the steps of the whole sort.
  Position next_pivot(Position lo, Position span) {
    constexpr std::array<std::int8_t, 4> quarters{0, 1, 0, -1};
    return lo + span / 2 + quarters[step_++ % quarters.size()] * (span / 4);
  }

  // Two to four records whose keys differ: their order follows from the keys alone, and with it the number of steps
  // that the splits take. False if keys are equal.
  bool sort_few(Part part) {
    const auto count = static_cast<std::size_t>(part.hi - part.lo + 1);
    std::array<std::int64_t, small_sort_limit> keys{0, 0, beyond_all_keys, beyond_all_keys + 1};
    for (std::size_t i = 0; i < count; ++i) {
      keys[i] = key(part.lo + static_cast<Position>(i));
    }
    const SmallSort* const order = small_sort(count, keys);
    if (order == nullptr) {
      return false;
    }
    std::array<FixedRecord, small_sort_limit> records;
    for (std::size_t i = 0; i < count; ++i) {
      load(part.lo + static_cast<Position>(i), records[i]);
    }
    for (std::size_t i = 0; i < count; ++i) {
      store(records[order->from[i]], part.lo + static_cast<Position>(i));
    }
    step_ += order->steps;
    return true;
  }

  // A part of at most one block. Moves the records with smaller keys before the pivot, those with larger keys behind
  // it; returns where it ends up.
  Position split_block(Part part, Position pivot) {
    const Position last = part.hi - part.lo;
    const Position at = pivot - part.lo;
    const std::int64_t pivot_key = key(pivot);
    std::uint64_t smaller = 0;  // bit i: key(i) < pivot key
    std::uint64_t larger = 0;   // bit last - i: key(i) > pivot key
    for (Position i = 0; i <= last; ++i) {
      const std::int64_t past_pivot = key(part.lo + i) - pivot_key;
      smaller = (smaller >> 1) | (static_cast<std::uint64_t>(past_pivot) & sign);
      larger = 2 * larger + (static_cast<std::uint64_t>(-past_pivot) >> (block - 1));
    }
    smaller >>= (block - 1 - last) & (block - 1);
    const std::uint64_t larger_before = larger >> ((last - at) & (block - 1)) >> 1;
    const std::uint64_t smaller_behind = smaller >> at >> 1;
    if ((larger_before | smaller_behind) == 0) {
      return pivot;
    }
    const Position left = larger_before == 0 ? at : at - 1 - highest_bit(larger_before);
    const Position right = smaller_behind == 0 ? at : at + 1 + highest_bit(smaller_behind);
    Hole hole(*this, pivot);
    if (left < at) {
      hole.move_to(part.lo + left);
    }
    // A bit each ends the walk: `left` from the right, `right` from the left. The record that is now in the pivot's
    // place is larger; without one the walk does not come here.
    std::uint64_t at_most = (~larger & ~(std::uint64_t{1} << (last - at))) >> (last - right) << (last - right);
    at_most |= std::uint64_t{1} << (last - left);
    std::uint64_t at_least = ~smaller >> left >> 1 << left << 1 | std::uint64_t{1} << right;
    Position free = left;
    for (;;) {
      const Position from_right = last - lowest_bit(at_most);
      if (from_right <= free) {
        break;
      }
      at_most &= at_most - 1;
      hole.move_to(part.lo + from_right);
      const Position from_left = lowest_bit(at_least);
      if (from_left >= from_right) {
        free = from_right;
        break;
      }
      at_least &= at_least - 1;
      hole.move_to(part.lo + from_left);
      free = from_left;
    }
    return part.lo + free;
  }

  // A part of any length.
  Position split_blocks(Part part, Position pivot) {
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
    Hole hole(*this, pivot);
    if (left < pivot) {
      hole.move_to(left);
    }
    // Records up to the hole and from `end` on are where they belong; those between are untouched.
    Position free = left;
    Position end = right + 1;
    Position left_begin = left + 1;  // of the left block
    Position left_end = left_begin;  // where the next one begins
    Position right_begin = end;      // of the right block, where the next one ends
    Position right_last = right;     // of the right block
    std::uint64_t at_least = 0;      // bit i: key(left_begin + i) >= pivot key
    std::uint64_t at_most = 0;       // bit i: key(right_last - i) <= pivot key
    for (;;) {
      while (at_most == 0) {
        if (right_begin <= free + 1) {
          return free;
        }
        right_last = right_begin - 1;
        right_begin = std::max(free + 1, right_begin - block);
        for (Position i = right_begin; i <= right_last; ++i) {
          at_most = 2 * at_most + (key(i) <= pivot_key ? 1 : 0);
        }
      }
      const Position from_right = right_last - lowest_bit(at_most);
      if (from_right <= free) {
        return free;
      }
      at_most &= at_most - 1;
      hole.move_to(from_right);
      end = from_right;
      while (at_least == 0) {
        if (left_end >= end) {
          return end;
        }
        left_begin = left_end;
        left_end = std::min(end, left_end + block);
        for (Position i = left_end; i-- > left_begin;) {
          at_least = 2 * at_least + (key(i) >= pivot_key ? 1 : 0);
        }
      }
      const Position from_left = left_begin + lowest_bit(at_least);
      if (from_left >= end) {
        return end;
      }
      at_least &= at_least - 1;
      hole.move_to(from_left);
      free = from_left;
    }
  }

  static constexpr std::uint64_t sign = std::uint64_t{1} << 63;
  static Position lowest_bit(std::uint64_t bits) { return __builtin_ctzll(bits); }
  static Position highest_bit(std::uint64_t bits) { return block - 1 - __builtin_clzll(bits); }

  std::int32_t* record(Position r) const { return a_ + r * width(); }
  std::int32_t key(Position r) const { return record(r)[key_]; }
  std::int64_t width() const { return Width == 0 ? width_ : Width; }

  void load(Position r, FixedRecord& to) const { std::memcpy(&to, record(r), sizeof to); }
  void store(const FixedRecord& from, Position r) const { std::memcpy(record(r), &from, sizeof from); }

  // The free place while records move; the record taken out of it comes back in the end.
  class Hole {
   public:
    Hole(RecordSort& sort, Position at) : sort_(sort), at_(at) {
      if constexpr (Width == 0) {
        copy(sort_.record(at), sort_.work_);
      } else {
        sort_.load(at, held_);
      }
    }
    Hole(const Hole&) = delete;
    Hole& operator=(const Hole&) = delete;
    ~Hole() {
      if constexpr (Width == 0) {
        copy(sort_.work_, sort_.record(at_));
      } else {
        sort_.store(held_, at_);
      }
    }

    void move_to(Position from) {
      if constexpr (Width == 0) {
        copy(sort_.record(from), sort_.record(at_));
      } else {
        FixedRecord moved;
        sort_.load(from, moved);
        sort_.store(moved, at_);
      }
      at_ = from;
    }

   private:
    void copy(const std::int32_t* from, std::int32_t* to) const {
      std::memcpy(to, from, static_cast<std::size_t>(sort_.width_) * sizeof *to);
    }

    RecordSort& sort_;
    Position at_;
    FixedRecord held_;
  };

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

}  // namespace zortav
