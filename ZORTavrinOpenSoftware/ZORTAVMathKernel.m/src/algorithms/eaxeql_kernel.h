// SPDX-License-Identifier: MIT
// Inner loop of eaxeql: a batch of recorded sweeps of rotations applied to V, panel after panel of rows.
//
// Four sweeps pass over the columns of V together, each one plane behind the one before it, so that an element is
// loaded and stored once for four rotations. Groups of four follow each other as closely, a block of planes at a time:
// what they work on is a window of columns that moves through V once a batch and stays in the first-level cache. No
// element sees its operations in another order. Rotations of later sweeps are computed in between.
// Included by eigen_kernel_unit.cpp only.
#pragma once

#include <hwy/cache_control.h>

#include <cstddef>
#include <utility>

#include "algorithms/eaxeql_sweep_kernel.h"
#include "algorithms/eigen_kernel_table.h"
#include "algorithms/eigen_octet.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// The rows of a panel. Where V does not fit the caches near by, memory is read in pieces of a useful length; else a
// low panel leaves more zeros out.
constexpr std::size_t low_panel = 32;
constexpr std::size_t high_panel = 128;
constexpr std::size_t order_of_high_panels = 1024;
// The planes that a group of sweeps advances by before the next group follows.
constexpr std::ptrdiff_t planes_at_once = 32;
// Columns that the first group fetches ahead; what the others fetch is there.
constexpr std::ptrdiff_t fetch_distance = 16;
constexpr std::size_t line_elements = 8;

// Registers of rows that are rotated together: with four sweeps each of them takes five registers of the processor.
constexpr std::size_t strip_registers = register_lanes == octet ? 4 : 2;

// Planes of a strip for one rotation that is computed in between: their multiplications alone take 64 or 128 cycles of
// two units of 256 bits, its chain some 80. From such an order on a pass has planes enough for the longer time.
constexpr std::size_t fewer_planes_a_rotation = register_lanes == octet ? 1 : 4;
constexpr std::size_t more_planes_a_rotation = 2 * fewer_planes_a_rotation;
constexpr std::ptrdiff_t order_of_more_planes = 300;

// Rows of V: x is the first element of column 0, n the leading dimension.
struct Rows {
  double* x;
  std::ptrdiff_t n;
  std::ptrdiff_t count;
  SweepSource& source;
  HWY_INLINE double* operator[](std::ptrdiff_t i) const { return x + i * n; }
  HWY_INLINE void leave_out(std::ptrdiff_t done) {
    x += done;
    count -= done;
  }
};

// Nothing to compute in between.
struct NoRotations {
  template <std::size_t Slot, std::size_t Slots>
  HWY_INLINE void step() {}
  HWY_INLINE void finish() {}
};

// Sweeps s = 0, 1, ... of which sweep s is at plane i + s: the planes i = high..low of the first one, for Wide
// registers of rows. rotation[s] is what sweep s does in its first plane. One rotation for so many Planes is computed
// in between.
template <class D, std::size_t Wide, std::size_t Sweeps, std::size_t Planes, class Between>
HWY_INLINE void rotate_strip(const Rows& v, const Rotation* const (&rotation)[Sweeps], std::ptrdiff_t high,
                             std::ptrdiff_t low, Between between) {
  constexpr D d;
  constexpr std::size_t lanes = hn::MaxLanes(d);
  using Vector = hn::Vec<D>;
  Vector carry[Sweeps][Wide];  // the left column of sweep s
  for (std::size_t s = 0; s < Sweeps; ++s) {
    for (std::size_t q = 0; q < Wide; ++q) {
      carry[s][q] = hn::LoadU(d, v[high + 1 + static_cast<std::ptrdiff_t>(s)] + q * lanes);
    }
  }
  double* from = v[high];
  const std::ptrdiff_t count = high - low + 1;
  const auto plane = [&]<std::size_t Number>(std::ptrdiff_t k) __attribute__((always_inline)) {
    for (std::size_t at = 0; at < Wide * lanes; at += line_elements) {
      hwy::Prefetch(from - fetch_distance * v.n + at);
    }
    Vector strip[Wide];
    for (std::size_t q = 0; q < Wide; ++q) {
      strip[q] = hn::LoadU(d, from + q * lanes);
    }
    const auto turn = [&]<std::size_t S>() __attribute__((always_inline)) {
      between.template step<Number * Sweeps + S, Planes * Sweeps>();
      const Vector cosine = hn::Set(d, rotation[S][k].c);
      const Vector sine = hn::Set(d, rotation[S][k].s);
      for (std::size_t q = 0; q < Wide; ++q) {
        const Vector left = strip[q];
        const Vector right = carry[S][q];
        strip[q] = hn::Add(hn::Mul(sine, left), hn::Mul(cosine, right));
        carry[S][q] = hn::Sub(hn::Mul(cosine, left), hn::Mul(sine, right));
      }
    };
    [&]<std::size_t... S>(std::index_sequence<S...>) __attribute__((always_inline)) {
      (turn.template operator()<S>(), ...);
    }
    (std::make_index_sequence<Sweeps>());
    double* const to = from + static_cast<std::ptrdiff_t>(Sweeps) * v.n;
    for (std::size_t q = 0; q < Wide; ++q) {
      hn::StoreU(strip[q], d, to + q * lanes);
    }
    from -= v.n;
  };
  for (std::ptrdiff_t k = 0; k < count; k += static_cast<std::ptrdiff_t>(Planes)) {
    [&]<std::size_t... Number>(std::index_sequence<Number...>) __attribute__((always_inline)) {
      (plane.template operator()<Number>(k + static_cast<std::ptrdiff_t>(Number)), ...);
    }
    (std::make_index_sequence<Planes>());
  }
  between.finish();
  for (std::size_t s = 0; s < Sweeps; ++s) {
    for (std::size_t q = 0; q < Wide; ++q) {
      hn::StoreU(carry[s][q], d, v[low + static_cast<std::ptrdiff_t>(s)] + q * lanes);
    }
  }
}

// The planes of a strip during which rotations are computed. Returns their number.
template <std::size_t Sweeps, std::size_t Planes>
std::ptrdiff_t rotate_and_sweep(const Rows& v, const Rotation* const (&rotation)[Sweeps], std::ptrdiff_t high,
                                std::ptrdiff_t low) {
  const std::size_t planes = static_cast<std::size_t>(high - low + 1);
  const std::size_t rotations = HWY_MIN(planes / Planes, v.source.sweep.remaining);
  if (rotations == 0) {
    return 0;
  }
  const std::ptrdiff_t done = static_cast<std::ptrdiff_t>(rotations * Planes);
  rotate_strip<Tag, strip_registers, Sweeps, Planes>(v, rotation, high, high - done + 1, Sweeping(v.source.sweep));
  v.source.sweep.remaining -= rotations;
  if (v.source.sweep.remaining == 0) {
    v.source.go_on(v.source);
  }
  return done;
}

// The rows that do not fill a register.
template <class D, std::size_t Sweeps>
HWY_INLINE void rotate_last_rows(Rows v, const Rotation* const (&rotation)[Sweeps], std::ptrdiff_t high,
                                 std::ptrdiff_t low) {
  constexpr std::ptrdiff_t lanes = hn::MaxLanes(D());
  if (v.count >= lanes) {
    rotate_strip<D, 1, Sweeps, 1>(v, rotation, high, low, NoRotations());
    v.leave_out(lanes);
  }
  if constexpr (lanes > 1) {
    if (v.count > 0) {
      rotate_last_rows<hn::Half<D>, Sweeps>(v, rotation, high, low);
    }
  }
}

template <std::size_t Sweeps>
void rotate_rows(Rows v, const Rotation* const (&rotation)[Sweeps], std::ptrdiff_t high, std::ptrdiff_t low) {
  constexpr std::ptrdiff_t strip_rows = strip_registers * register_lanes;
  for (; v.count >= strip_rows; v.leave_out(strip_rows)) {
    std::ptrdiff_t done = 0;
    if constexpr (Sweeps == runs_together) {
      done = v.n < order_of_more_planes ? rotate_and_sweep<Sweeps, fewer_planes_a_rotation>(v, rotation, high, low)
                                        : rotate_and_sweep<Sweeps, more_planes_a_rotation>(v, rotation, high, low);
    }
    if (high - done >= low) {
      const Rotation* rest[Sweeps];
      for (std::size_t s = 0; s < Sweeps; ++s) {
        rest[s] = rotation[s] + done;
      }
      rotate_strip<Tag, strip_registers, Sweeps, 1>(v, rest, high - done, low, NoRotations());
    }
  }
  for (; v.count >= static_cast<std::ptrdiff_t>(register_lanes); v.leave_out(register_lanes)) {
    rotate_strip<Tag, 1, Sweeps, 1>(v, rotation, high, low, NoRotations());
  }
  if constexpr (register_lanes > 1) {
    if (v.count > 0) {
      rotate_last_rows<hn::Half<Tag>, Sweeps>(v, rotation, high, low);
    }
  }
}

// One sweep over the rows of a panel: planes top..low.
struct PanelSweep {
  std::ptrdiff_t top;
  std::ptrdiff_t low;
  const Rotation* rotation;
};

// Up to runs_together sweeps, together in the planes start..stop of the first of them.
class SweepGroup {
 public:
  void set(const PanelSweep* sweep, std::size_t sweeps) {
    sweep_ = sweep;
    sweeps_ = sweeps;
    start_ = sweep[0].top;
    stop_ = lowest_ = sweep[0].low;
    highest_ = start_;
    for (std::ptrdiff_t s = 1; s < static_cast<std::ptrdiff_t>(sweeps); ++s) {
      start_ = HWY_MIN(start_, sweep[s].top - s);
      stop_ = HWY_MAX(stop_, sweep[s].low - s);
      highest_ = HWY_MAX(highest_, sweep[s].top);
      lowest_ = HWY_MIN(lowest_, sweep[s].low);
    }
    started_ = finished_ = false;
  }

  // Goes on as far as it may where the columns from `final` on have seen all sweeps before this group. Returns the
  // first of the columns that have seen this group, too.
  std::ptrdiff_t advance(const Rows& v, std::ptrdiff_t final) {
    if (finished_) {
      return final;
    }
    const std::ptrdiff_t sweeps = static_cast<std::ptrdiff_t>(sweeps_);
    if (!started_) {
      const bool meet = start_ >= stop_;
      if ((meet ? start_ : lowest_) < final) {
        return HWY_MAX(final, highest_ + 2);
      }
      if (!meet) {
        for (std::ptrdiff_t s = 0; s < sweeps; ++s) {
          alone(v, sweep_[s], sweep_[s].top, sweep_[s].low);
        }
        finished_ = true;
        return final;
      }
      for (std::ptrdiff_t s = 0; s < sweeps; ++s) {
        alone(v, sweep_[s], sweep_[s].top, start_ + s + 1);
      }
      started_ = true;
      next_ = start_;
    }
    const std::ptrdiff_t low = HWY_MAX(final, stop_);
    if (next_ >= low) {
      together<runs_together>(v, low);
      next_ = low - 1;
    }
    if (next_ < stop_ && lowest_ >= final) {
      for (std::ptrdiff_t s = 0; s < sweeps; ++s) {
        alone(v, sweep_[s], stop_ + s - 1, sweep_[s].low);
      }
      finished_ = true;
      return final;
    }
    return HWY_MAX(final, next_ + 1 + sweeps);
  }

  std::ptrdiff_t highest() const { return highest_; }
  std::ptrdiff_t lowest() const { return lowest_; }

 private:
  static void alone(const Rows& v, const PanelSweep& sweep, std::ptrdiff_t high, std::ptrdiff_t low) {
    if (high >= low) {
      rotate_rows<1>(v, {sweep.rotation + (sweep.top - high)}, high, low);
    }
  }

  template <std::size_t Sweeps>
  void together(const Rows& v, std::ptrdiff_t low) const {
    if constexpr (Sweeps > 1) {
      if (sweeps_ < Sweeps) {
        return together<Sweeps - 1>(v, low);
      }
    }
    const Rotation* rotation[Sweeps];
    for (std::size_t s = 0; s < Sweeps; ++s) {
      rotation[s] = sweep_[s].rotation + (sweep_[s].top - next_ - static_cast<std::ptrdiff_t>(s));
    }
    rotate_rows<Sweeps>(v, rotation, next_, low);
  }

  const PanelSweep* sweep_;
  std::size_t sweeps_;
  std::ptrdiff_t start_, stop_, highest_, lowest_;
  std::ptrdiff_t next_;  // the next plane of the first sweep
  bool started_, finished_;
};

// The rows row..row+rows-1 of V.
void rotate_panel(std::size_t n, double* v, std::size_t row, std::size_t rows, const RotationBatch& batch,
                  SweepSource& source) {
  const Rows panel{v + row, static_cast<std::ptrdiff_t>(n), static_cast<std::ptrdiff_t>(rows), source};
  PanelSweep sweep[most_runs];
  for (std::size_t r = 0; r < batch.runs; ++r) {
    const RotationRun& run = batch.run[r];
    std::size_t skipped = 0;
    const std::size_t first = row + rows - 1 + run.zeros.sweep;
    if (first <= run.top) {
      skipped = run.top - first;
      double* const right = panel[static_cast<std::ptrdiff_t>(first) + 1];
      for (std::size_t k = 0; k < rows; ++k) {
        right[k] = run.zeros.negative[skipped] != 0 ? -0.0 : 0.0;
      }
    }
    sweep[r] = {static_cast<std::ptrdiff_t>(run.top - skipped), static_cast<std::ptrdiff_t>(run.top + 1 - run.count),
                run.rotation + skipped};
  }
  SweepGroup group[(most_runs + runs_together - 1) / runs_together];
  std::size_t groups = 0;
  std::ptrdiff_t highest = 0;
  std::ptrdiff_t lowest = panel.n;
  for (std::size_t r = 0; r < batch.runs; r += runs_together) {
    group[groups].set(sweep + r, HWY_MIN(runs_together, batch.runs - r));
    highest = HWY_MAX(highest, group[groups].highest());
    lowest = HWY_MIN(lowest, group[groups].lowest());
    ++groups;
  }
  std::ptrdiff_t final = highest + 1;
  while (final > lowest) {
    final = HWY_MAX(lowest, final - planes_at_once);
    std::ptrdiff_t reached = final;
    for (std::size_t g = 0; g < groups; ++g) {
      reached = group[g].advance(panel, reached);
    }
  }
}

void rotate(std::size_t n, double* v, const RotationBatch& batch, SweepSource& source) {
  const std::size_t rows = n < order_of_high_panels ? low_panel : high_panel;
  for (std::size_t row = 0; row < n; row += rows) {
    rotate_panel(n, v, row, HWY_MIN(rows, n - row), batch, source);
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
