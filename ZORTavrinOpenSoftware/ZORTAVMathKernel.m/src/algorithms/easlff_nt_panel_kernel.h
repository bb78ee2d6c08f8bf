// SPDX-License-Identifier: MIT
// A panel of pivots of the front elimination: the panel's triangle is eliminated first, on a copy; then every row below
// takes its multipliers in one go; then each trailing entry takes the updates of all the panel's pivots, in their
// order, while it stays in a register. An element sees the same operations in the same order as in one sweep per
// block, but the trailing triangle is read and written once per panel.
#pragma once

#include <cstdint>
#include <cstring>

#include "algorithms/easlff_nt_block_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

constexpr std::int64_t panel_pivots = 48;  // a multiple of block_pivots
constexpr std::int64_t panel_blocks = panel_pivots / block_pivots;

using FrontTag = hn::ScalableTag<double>;
constexpr std::int64_t lanes = hn::MaxLanes(FrontTag());
constexpr std::int64_t strip_rows = 2 * lanes;

struct Panel {
  std::int64_t pivots;
  // The panel's equations among themselves, as a front of their own.
  alignas(64) double triangle[panel_pivots * (panel_pivots + 1) / 2];
  BlockHead head[panel_blocks];
  // before[b][p][q] = -l·d of the panel's column q of block b and pivot p of an earlier block
  double before[panel_blocks][panel_pivots][block_pivots];
};

// Eliminates the panel's triangle on a copy. False, with nothing changed, when a pivot would be refused.
inline bool eliminate_triangle(const Front& f, Panel& panel, PivotTest& test) {
  const std::int64_t pivots = panel.pivots;
  const Front triangle{pivots, panel.triangle};
  for (std::int64_t c = 0; c < pivots; ++c) {
    std::memcpy(triangle.column(c) + c, f.column(c) + c, static_cast<std::size_t>(pivots - c) * sizeof *f.a);
  }
  PivotTest trial = test;
  constexpr std::int64_t clear_nothing = 0;
  if (!eliminate_blocks(triangle, pivots, clear_nothing, trial, panel.head)) {
    return false;
  }
  test = trial;
  for (std::int64_t c = 0; c < pivots; ++c) {
    std::memcpy(f.column(c) + c, triangle.column(c) + c, static_cast<std::size_t>(pivots - c) * sizeof *f.a);
    const double pivot = panel.head[c / block_pivots].d[c % block_pivots];
    for (std::int64_t i = (c / block_pivots + 1) * block_pivots; i < pivots; ++i) {
      panel.before[i / block_pivots][c][i % block_pivots] = -triangle.column(c)[i] * pivot;
    }
  }
  return true;
}

// Rows first .. first+rows-1 of the panel's columns, to and from a strip of strip_rows rows a column. Rows that the
// strip has in excess are zero.
inline void load_strip(const Front& f, std::int64_t pivots, std::int64_t first, std::int64_t rows, double* strip) {
  const FrontTag d;
  for (std::int64_t p = 0; p < pivots; ++p, strip += strip_rows) {
    const double* const from = f.column(p) + first;
    if (rows == strip_rows) {
      hn::Store(hn::LoadU(d, from), d, strip);
      hn::Store(hn::LoadU(d, from + lanes), d, strip + lanes);
    } else {
      for (std::int64_t i = 0; i < strip_rows; ++i) {
        strip[i] = i < rows ? from[i] : 0;
      }
    }
  }
}

inline void store_strip(const Front& f, std::int64_t pivots, std::int64_t first, std::int64_t rows,
                        const double* strip) {
  for (std::int64_t p = 0; p < pivots; ++p, strip += strip_rows) {
    std::memcpy(f.column(p) + first, strip, static_cast<std::size_t>(rows) * sizeof *strip);
  }
}

// Turns the entries of a strip into multipliers, block after block.
inline void scale_strip(const Panel& panel, double* strip) {
  const FrontTag d;
  for (std::int64_t k = 0; k < panel.pivots; k += block_pivots) {
    const std::int64_t block = k / block_pivots;
    const BlockHead& head = panel.head[block];
    const std::int64_t columns = panel.pivots - k < block_pivots ? panel.pivots - k : block_pivots;
    double* const at = strip + k * strip_rows;
    for (std::int64_t part = 0; part < strip_rows; part += lanes) {
      hn::Vec<FrontTag> a[block_pivots];
      for (std::int64_t q = 0; q < block_pivots; ++q) {
        a[q] = q < columns ? hn::Load(d, at + q * strip_rows + part) : hn::Zero(d);
      }
      for (std::int64_t p = 0; p < k; ++p) {
        const auto l = hn::Load(d, strip + p * strip_rows + part);
        for (std::int64_t q = 0; q < block_pivots; ++q) {
          a[q] = hn::Add(hn::Mul(l, hn::Set(d, panel.before[block][p][q])), a[q]);
        }
      }
      const auto l1 = hn::Mul(a[0], hn::Set(d, head.r[0]));
      hn::Store(l1, d, at + part);
      if (columns >= 2) {
        const auto l2 = hn::Mul(hn::Sub(a[1], hn::Mul(l1, hn::Set(d, head.u1))), hn::Set(d, head.r[1]));
        hn::Store(l2, d, at + strip_rows + part);
        if (columns == 3) {
          const auto rest = hn::Sub(hn::Sub(a[2], hn::Mul(hn::Set(d, head.u2), l1)), hn::Mul(l2, hn::Set(d, head.t)));
          hn::Store(hn::Mul(rest, hn::Set(d, head.r[2])), d, at + 2 * strip_rows + part);
        }
      }
    }
  }
}

inline void scale_rows_below(const Front& f, const Panel& panel) {
  alignas(64) double strip[panel_pivots * strip_rows];
  for (std::int64_t i = panel.pivots; i < f.n; i += strip_rows) {
    const std::int64_t rows = f.n - i < strip_rows ? f.n - i : strip_rows;
    load_strip(f, panel.pivots, i, rows, strip);
    scale_strip(panel, strip);
    store_strip(f, panel.pivots, i, rows, strip);
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
