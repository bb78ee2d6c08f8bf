// SPDX-License-Identifier: MIT
// The order of two, three or four different keys from the outcomes of their comparisons, and how many steps eaxsort's
// splits take to sort them: tables worked out by the compiler.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zortav {

inline constexpr std::int64_t small_sort_limit = 4;

struct SmallSort {
  std::array<std::uint8_t, small_sort_limit> from;  // where the i-th smallest stands
  std::uint8_t steps;
};

namespace detail {

inline constexpr std::size_t comparisons = 6;  // of four keys in pairs

// Bit p: of the p-th pair i < j, key j is the smaller one.
template <class Keys>
constexpr std::size_t outcomes(const Keys& keys) {
  const auto behind = [&](std::size_t i, std::size_t j) { return static_cast<std::size_t>(keys[j] < keys[i] ? 1 : 0); };
  return behind(0, 1) | behind(0, 2) << 1 | behind(1, 2) << 2 | behind(0, 3) << 3 | behind(1, 3) << 4 |
         behind(2, 3) << 5;
}

using Ranks = std::array<int, small_sort_limit>;

// Splits lo..hi as eaxsort does, with the pivot in the middle: parts of up to four records have no quarter.
constexpr int steps_of_splits(Ranks& rank, int lo, int hi) {
  if (lo >= hi) {
    return 0;
  }
  const auto at = [&](int i) -> int& { return rank[static_cast<std::size_t>(i)]; };
  const int pivot = lo + (hi - lo) / 2;
  const int held = at(pivot);
  int left = lo;
  int right = hi;
  while (left < pivot && at(left) <= held) {
    ++left;
  }
  while (right > pivot && at(right) >= held) {
    --right;
  }
  if (left != right) {
    at(pivot) = at(left);
    while (left < right) {
      if (at(right) <= held) {
        at(left) = at(right);
        do {
          ++left;
        } while (left < right && at(left) < held);
        if (left == right) {
          break;
        }
        at(right) = at(left);
      }
      --right;
    }
    at(left) = held;
  }
  return 1 + steps_of_splits(rank, lo, left - 1) + steps_of_splits(rank, left + 1, hi);
}

constexpr auto sorts_of(int count) {
  std::array<SmallSort, std::size_t{1} << comparisons> sorts{};
  Ranks rank{0, 0, 0, 0};
  for (int code = 0; code < 256; ++code) {
    bool different = true;
    for (int i = 0; i < small_sort_limit; ++i) {
      const auto place = static_cast<std::size_t>(i);
      rank[place] = i < count ? code >> (2 * i) & 3 : i;
      different = different && (i < count || code >> (2 * i) == 0);
      for (int j = 0; j < i; ++j) {
        different = different && rank[static_cast<std::size_t>(j)] != rank[place];
      }
    }
    if (different) {
      SmallSort& sort = sorts[outcomes(rank)];
      for (std::size_t i = 0; i < small_sort_limit; ++i) {
        sort.from[static_cast<std::size_t>(rank[i])] = static_cast<std::uint8_t>(i);
      }
      Ranks split = rank;
      sort.steps = static_cast<std::uint8_t>(steps_of_splits(split, 0, count - 1));
    }
  }
  return sorts;
}

inline constexpr std::array small_sorts{sorts_of(2), sorts_of(3), sorts_of(4)};

}  // namespace detail

// For keys[0..count-1], 2 <= count <= 4; null if two are equal. The keys behind them must be larger than all.
inline const SmallSort* small_sort(std::size_t count, const std::array<std::int64_t, small_sort_limit>& keys) {
  const bool equal = (keys[0] == keys[1]) | (keys[0] == keys[2]) | (keys[1] == keys[2]) | (keys[0] == keys[3]) |
                     (keys[1] == keys[3]) | (keys[2] == keys[3]);
  return equal ? nullptr : &detail::small_sorts[count - 2][detail::outcomes(keys)];
}

}  // namespace zortav
