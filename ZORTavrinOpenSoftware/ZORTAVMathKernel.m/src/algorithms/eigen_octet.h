// SPDX-License-Identifier: MIT
// Eight logical lanes, whatever the register width: element k of a contiguous vector belongs to lane k mod 8, and the
// lanes of a sum are joined by one tree. This is what makes the levels agree to the last bit.
// Included by eigen_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

using Tag = hn::ScalableTag<double>;
using Register = hn::Vec<Tag>;
constexpr Tag tag;

constexpr std::size_t octet = 8;
constexpr std::size_t register_lanes = hn::MaxLanes(tag);
constexpr std::size_t octet_registers = octet / register_lanes;

struct Octet {
  Register part[octet_registers];
};

HWY_INLINE Octet zero_octet() {
  Octet x;
  for (Register& part : x.part) {
    part = hn::Zero(tag);
  }
  return x;
}

HWY_INLINE double joined(const double* s) {
  return ((s[0] + s[4]) + (s[2] + s[6])) + ((s[1] + s[5]) + (s[3] + s[7]));
}

// The same tree in registers: the upper half is added to the lower one until two lanes are left.
template <class D>
HWY_INLINE double halves_joined(D d, hn::Vec<D> x) {
  const hn::Half<D> half;
  if constexpr (hn::MaxLanes(d) > 2) {
    return halves_joined(half, hn::Add(hn::LowerHalf(half, x), hn::UpperHalf(half, x)));
  } else {
    return hn::GetLane(x) + hn::GetLane(hn::UpperHalf(half, x));
  }
}

HWY_INLINE double joined(Octet x) {
  for (std::size_t half = octet_registers / 2; half != 0; half /= 2) {
    for (std::size_t q = 0; q < half; ++q) {
      x.part[q] = hn::Add(x.part[q], x.part[q + half]);
    }
  }
  return halves_joined(tag, x.part[0]);
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
