// SPDX-License-Identifier: MIT
// Inner loop of eaxeql: a batch of recorded rotations applied to V, panel after panel of rows.
//
// The rows of a panel are copied next to each other, so that a panel stays in the cache for the whole batch whatever
// the leading dimension, and goes back when the batch is done. Two runs that begin in the same plane are applied
// together, the second one plane behind the first: each element is then loaded and stored once for both. No element
// sees its operations in another order. Included by eigen_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "algorithms/eigen_kernel_table.h"
#include "algorithms/eigen_octet.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr std::size_t cache_line = 64;

struct alignas(cache_line) Panel {
  double x[panel_columns * panel_rows];
};

// A panel of Wide registers of rows; column i of V stands at x + (i - first)·width.
template <std::size_t Wide>
struct RotatedPanel {
  static constexpr std::size_t width = Wide * register_lanes;

  double* x;

  struct Strip {
    Register part[Wide];
  };

  HWY_INLINE double* column(std::size_t i) const { return x + i * width; }

  HWY_INLINE Strip load(std::size_t i) const {
    Strip strip;
    for (std::size_t q = 0; q < Wide; ++q) {
      strip.part[q] = hn::Load(tag, column(i) + q * register_lanes);
    }
    return strip;
  }
  HWY_INLINE void store(const Strip& strip, std::size_t i) const {
    for (std::size_t q = 0; q < Wide; ++q) {
      hn::Store(strip.part[q], tag, column(i) + q * register_lanes);
    }
  }

  // left becomes the new right column; carry, the right column, becomes the new left one.
  static HWY_INLINE void turn(const Rotation& rotation, Strip& left, Strip& carry) {
    const Register c = hn::Set(tag, rotation.c);
    const Register s = hn::Set(tag, rotation.s);
    for (std::size_t q = 0; q < Wide; ++q) {
      const Register l = left.part[q];
      const Register t = carry.part[q];
      left.part[q] = hn::Add(hn::Mul(s, l), hn::Mul(c, t));
      carry.part[q] = hn::Sub(hn::Mul(c, l), hn::Mul(s, t));
    }
  }

  HWY_INLINE void apply(const RotationRun& run, std::size_t first) const {
    std::size_t i = run.top - first;
    Strip carry = load(i + 1);
    for (std::size_t k = 0; k < run.count; ++k, --i) {
      Strip strip = load(i);
      turn(run.rotation[k], strip, carry);
      store(strip, i + 1);
    }
    store(carry, i + 1);
  }

  // The same top, and ahead reaches at least as far as behind.
  HWY_INLINE void apply_two(const RotationRun& ahead, const RotationRun& behind, std::size_t first) const {
    std::size_t i = ahead.top - first;
    Strip carry_ahead = load(i + 1);
    Strip carry_behind = load(i);
    turn(ahead.rotation[0], carry_behind, carry_ahead);
    --i;
    const std::size_t together = behind.count < ahead.count ? behind.count : behind.count - 1;
    for (std::size_t k = 0; k < together; ++k, --i) {
      Strip strip = load(i);
      turn(ahead.rotation[k + 1], strip, carry_ahead);
      turn(behind.rotation[k], strip, carry_behind);
      store(strip, i + 2);
    }
    if (behind.count == ahead.count) {
      turn(behind.rotation[together], carry_ahead, carry_behind);
      store(carry_ahead, i + 2);
      store(carry_behind, i + 1);
      return;
    }
    store(carry_behind, i + 2);
    for (std::size_t k = together + 1; k < ahead.count; ++k, --i) {
      Strip strip = load(i);
      turn(ahead.rotation[k], strip, carry_ahead);
      store(strip, i + 1);
    }
    store(carry_ahead, i + 1);
  }

  void apply(const RotationBatch& batch) const {
    std::size_t k = 0;
    while (k < batch.runs) {
      const RotationRun& run = batch.run[k];
      if (k + 1 < batch.runs && batch.run[k + 1].top == run.top && batch.run[k + 1].count <= run.count) {
        apply_two(run, batch.run[k + 1], batch.first);
        k += 2;
      } else {
        apply(run, batch.first);
        k += 1;
      }
    }
  }
};

// Rotates rows of V, at most a panel's width of them, of which v is the first element in column batch.first.
template <std::size_t Wide>
void rotate_rows(std::size_t rows, std::size_t n, double* v, const RotationBatch& batch, Panel& panel) {
  using Rotated = RotatedPanel<Wide>;
  const Rotated rotated{panel.x};
  for (std::size_t j = 0; j < batch.columns; ++j) {
    double* const to = rotated.column(j);
    const double* const from = v + j * n;
    if (rows == Rotated::width) {
      for (std::size_t q = 0; q < Rotated::width; q += register_lanes) {
        hn::Store(hn::LoadU(tag, from + q), tag, to + q);
      }
    } else {
      for (std::size_t q = 0; q < Rotated::width; ++q) {
        to[q] = q < rows ? from[q] : 0.0;
      }
    }
  }
  rotated.apply(batch);
  for (std::size_t j = 0; j < batch.columns; ++j) {
    const double* const from = rotated.column(j);
    double* const to = v + j * n;
    if (rows == Rotated::width) {
      for (std::size_t q = 0; q < Rotated::width; q += register_lanes) {
        hn::StoreU(hn::Load(tag, from + q), tag, to + q);
      }
    } else {
      for (std::size_t q = 0; q < rows; ++q) {
        to[q] = from[q];
      }
    }
  }
}

void rotate(std::size_t n, double* v, const RotationBatch& batch) {
  constexpr std::size_t capacity = panel_columns * panel_rows;
  static_assert(register_lanes <= panel_rows);
  Panel panel;
  v += batch.first * n;
  std::size_t row = 0;
  while (row < n) {
    const std::size_t left = n - row;
    if (left >= 4 * register_lanes && batch.columns * 4 * register_lanes <= capacity) {
      rotate_rows<4>(4 * register_lanes, n, v + row, batch, panel);
      row += 4 * register_lanes;
    } else if (left >= 2 * register_lanes && batch.columns * 2 * register_lanes <= capacity) {
      rotate_rows<2>(2 * register_lanes, n, v + row, batch, panel);
      row += 2 * register_lanes;
    } else {
      const std::size_t rows = left < register_lanes ? left : register_lanes;
      rotate_rows<1>(rows, n, v + row, batch, panel);
      row += rows;
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
