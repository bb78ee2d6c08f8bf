// SPDX-License-Identifier: MIT
// Inner loop of eaxeql: one sweep over the tridiagonal matrix, rotation after rotation.
//
// A rotation is one long chain of operations. It is computed without a branch, in parts that can stand apart: between
// them a processor finds other work, where there is some. Included by eigen_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "algorithms/eigen_kernel_table.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// Computes rotations from the state of a sweep on. Both lanes hold the same number: nothing is raised that the number
// itself does not raise.
class Sweeping {
 public:
  HWY_INLINE explicit Sweeping(TridiagonalSweep& sweep)
      : sweep_(sweep),
        d_(sweep.d + sweep.next),
        e_(sweep.e + sweep.next),
        rotation_(sweep.rotation),
        s_(hn::Set(two, sweep.s)),
        c_(hn::Set(two, sweep.c)),
        p_(hn::Set(two, sweep.p)),
        g_(hn::Set(two, sweep.g)) {}

  // Slot 0, 1, ... of the Slots that one rotation is spread over.
  template <std::size_t Slot, std::size_t Slots>
  HWY_INLINE void step() {
    static_assert(Slots % parts == 0);
    if constexpr (Slot == 0) {
      divide();
    } else if constexpr (Slot == Slots / parts) {
      take_root();
    } else if constexpr (Slot == 2 * (Slots / parts)) {
      invert();
    } else if constexpr (Slot == 3 * (Slots / parts)) {
      turn();
    }
  }

  HWY_INLINE void finish() {
    sweep_.next += d_ - (sweep_.d + sweep_.next);
    sweep_.rotation = rotation_;
    sweep_.s = hn::GetLane(s_);
    sweep_.c = hn::GetLane(c_);
    sweep_.p = hn::GetLane(p_);
    sweep_.g = hn::GetLane(g_);
  }

  static constexpr std::size_t parts = 4;

 private:
  static constexpr hn::CappedTag<double, 2> two{};
  using Number = hn::Vec<hn::CappedTag<double, 2>>;

  // the smaller of f = s·e and g by the larger one
  HWY_INLINE void divide() {
    const Number e = hn::Set(two, *e_);
    const Number f = hn::Mul(s_, e);
    b_ = hn::Mul(c_, e);
    g_below_ = hn::Ge(hn::Abs(f), hn::Abs(g_));
    larger_ = hn::IfThenElse(g_below_, f, g_);
    quotient_ = hn::Div(hn::IfThenElse(g_below_, g_, f), larger_);
    below_ = hn::Sub(hn::Set(two, d_[1]), p_);
    difference_ = hn::Sub(hn::Set(two, *d_), below_);
  }
  HWY_INLINE void take_root() { r_ = hn::Sqrt(hn::Add(hn::Mul(quotient_, quotient_), hn::Set(two, 1.0))); }
  HWY_INLINE void invert() {
    e_[1] = hn::GetLane(hn::Mul(larger_, r_));
    inverse_ = hn::Div(hn::Set(two, 1.0), r_);
  }
  HWY_INLINE void turn() {
    const Number other = hn::Mul(quotient_, inverse_);
    s_ = hn::IfThenElse(g_below_, inverse_, other);
    c_ = hn::IfThenElse(g_below_, other, inverse_);
    const Number r = hn::Add(hn::Mul(difference_, s_), hn::Mul(hn::Mul(hn::Set(two, 2.0), c_), b_));
    p_ = hn::Mul(s_, r);
    d_[1] = hn::GetLane(hn::Add(below_, p_));
    g_ = hn::Sub(hn::Mul(c_, r), b_);
    *rotation_++ = {hn::GetLane(c_), hn::GetLane(s_)};
    --d_;
    --e_;
  }

  TridiagonalSweep& sweep_;
  double* d_;
  double* e_;
  Rotation* rotation_;
  Number s_, c_, p_, g_;
  Number b_, larger_, quotient_, below_, difference_, r_, inverse_;
  hn::Mask<hn::CappedTag<double, 2>> g_below_;
};

void sweep(TridiagonalSweep& sweep) {
  Sweeping sweeping(sweep);
  for (; sweep.remaining != 0; --sweep.remaining) {
    sweeping.step<0, Sweeping::parts>();
    sweeping.step<1, Sweeping::parts>();
    sweeping.step<2, Sweeping::parts>();
    sweeping.step<3, Sweeping::parts>();
  }
  sweeping.finish();
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
