// SPDX-License-Identifier: MIT
// Sorts the numbers of R registers, R a power of two, without a branch: first each lane for itself, down the registers
// (K. E. Batcher, "Sorting networks and their applications", AFIPS 32 (1968), and the shortest known network for
// eight: D. E. Knuth, The Art of Computer Programming 3, section 5.3.4), then sorted lanes are merged two by two by
// bitonic merges. Afterwards lane l, register r holds number l·R + r of the ascending order.
// Included by kernel units only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>
#include <utility>

#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// step(k) for k = 0..count-1, each k a constant: arrays of registers stay in registers only where every index is one
// from the start.
template <class Step, std::size_t... k>
HWY_INLINE void unrolled(const Step& step, std::index_sequence<k...>) {
  (step(std::integral_constant<std::size_t, k>()), ...);
}
template <std::size_t count, class Step>
HWY_INLINE void unrolled(const Step& step) {
  unrolled(step, std::make_index_sequence<count>());
}

template <class D>
class SortingNetwork {
 public:
  using Vec = hn::Vec<D>;
  static constexpr std::size_t lanes = hn::MaxLanes(D());

  template <std::size_t R>
  static HWY_INLINE void sort(Vec (&r)[R]) {
    sort_lanes(r);
    merge_lanes<R, 1>(r);
  }

 private:
  using T = hn::TFromD<D>;
  static constexpr std::size_t block = 16 / sizeof(T);  // lanes that a byte shuffle can reach

  static HWY_INLINE void order(Vec& low, Vec& high) {
    const Vec smaller = hn::Min(low, high);
    high = hn::Max(low, high);
    low = smaller;
  }

  template <std::size_t R>
  static HWY_INLINE void sort_lanes(Vec (&r)[R]) {
    static_assert(R == 1 || R == 2 || R == 4 || R == 8);
    if constexpr (R == 8) {
      constexpr std::size_t low[] = {0, 1, 4, 5, 0, 1, 2, 3, 0, 2, 4, 6, 2, 3, 1, 3, 1, 3, 5};
      constexpr std::size_t high[] = {2, 3, 6, 7, 4, 5, 6, 7, 1, 3, 5, 7, 4, 5, 4, 6, 2, 4, 6};
      unrolled<std::size(low)>([&](auto k) __attribute__((always_inline)) { order(r[low[k]], r[high[k]]); });
    } else if constexpr (R == 4) {
      order(r[0], r[2]);
      order(r[1], r[3]);
      order(r[0], r[1]);
      order(r[2], r[3]);
      order(r[1], r[2]);
    } else if constexpr (R == 2) {
      order(r[0], r[1]);
    }
  }

  // Lane l of the result is lane l xor x.
  template <std::size_t x>
  static HWY_INLINE Vec exchanged(Vec v) {
    const D d;
    if constexpr (x % block != 0) {
      alignas(64) std::uint8_t from[lanes * sizeof(T)];
      for (std::size_t b = 0; b < lanes * sizeof(T); ++b) {
        from[b] = static_cast<std::uint8_t>((b ^ (x % block * sizeof(T))) % 16);
      }
      const hn::Repartition<std::uint8_t, D> bytes;
      v = hn::TableLookupBytes(v, hn::BitCast(d, hn::Load(bytes, from)));
    }
    if constexpr ((x & block) != 0) {
      v = hn::ConcatLowerUpper(d, v, v);
    }
    return v;
  }

  // Each lane takes the smaller number of itself and its partner if bit is not set in its place, else the larger one.
  template <std::size_t bit>
  static HWY_INLINE Vec smaller_then_larger(Vec own, Vec partner) {
    const D d;
    alignas(64) T larger[lanes];
    for (std::size_t l = 0; l < lanes; ++l) {
      larger[l] = (l & bit) != 0 ? T{-1} : T{0};
    }
    return hn::IfThenElse(hn::MaskFromVec(hn::Load(d, larger)), hn::Max(own, partner), hn::Min(own, partner));
  }

  // Bitonic sequences of 2·distance lanes: the stages between lanes, then those between registers.
  template <std::size_t R, std::size_t distance>
  static HWY_INLINE void merge_between_lanes(Vec (&r)[R]) {
    if constexpr (distance >= 1) {
      unrolled<R>([&](auto k) __attribute__((always_inline)) {
        r[k] = smaller_then_larger<distance>(r[k], exchanged<distance>(r[k]));
      });
      merge_between_lanes<R, distance / 2>(r);
    }
  }
  template <std::size_t R, std::size_t distance = R / 2>
  static HWY_INLINE void merge_between_registers(Vec (&r)[R]) {
    if constexpr (distance >= 1) {
      unrolled<R>([&](auto k) __attribute__((always_inline)) {
        if constexpr ((k & distance) == 0) {
          order(r[k], r[k + distance]);
        }
      });
      merge_between_registers<R, distance / 2>(r);
    }
  }

  // Runs of `width` lanes are sorted; makes them twice as wide until one is left.
  template <std::size_t R, std::size_t width>
  static HWY_INLINE void merge_lanes(Vec (&r)[R]) {
    if constexpr (width < lanes) {
      Vec merged[R];
      unrolled<R>([&](auto k) __attribute__((always_inline)) {
        merged[k] = smaller_then_larger<width>(r[k], exchanged<2 * width - 1>(r[R - 1 - k]));
      });
      unrolled<R>([&](auto k) __attribute__((always_inline)) { r[k] = merged[k]; });
      merge_between_lanes<R, width / 2>(r);
      merge_between_registers<R>(r);
      merge_lanes<R, 2 * width>(r);
    }
  }
};

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
