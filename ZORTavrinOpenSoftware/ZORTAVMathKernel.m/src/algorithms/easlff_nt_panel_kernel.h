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

// A strip is Vectors·lanes rows of the panel's columns, held column after column.
constexpr int panel_vectors = 2;
constexpr std::int64_t panel_rows = panel_vectors * lanes;

struct Panel {
  std::int64_t pivots;
  // The panel's equations among themselves, as a front of their own.
  alignas(64) double triangle[panel_pivots * (panel_pivots + 1) / 2];
  BlockHead head[panel_blocks];
  // before[b][p][q] = -l·d of the panel's column q of block b and pivot p of an earlier block; 0 for the columns that
  // the last block does not have, which are computed along
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
    for (std::int64_t block = c / block_pivots + 1; block * block_pivots < pivots; ++block) {
      for (std::int64_t q = 0; q < block_pivots; ++q) {
        const std::int64_t i = block * block_pivots + q;
        panel.before[block][c][q] = i < pivots ? -triangle.column(c)[i] * pivot : 0;
      }
    }
  }
  return true;
}

// Loads the rows from `row` on.
template <int Vectors>
inline void load_strip(const Front& f, std::int64_t pivots, std::int64_t row, double* strip) {
  const FrontTag d;
  for (std::int64_t p = 0; p < pivots; ++p) {
    const double* const from = f.column(p) + row;
    for (int v = 0; v < Vectors; ++v, strip += lanes) {
      hn::Store(hn::LoadU(d, from + v * lanes), d, strip);
    }
  }
}

// Multipliers of one block, from entries that the earlier blocks have updated.
HWY_INLINE void scale_block(const BlockHead& head, std::int64_t columns, hn::Vec<FrontTag> a1, hn::Vec<FrontTag> a2,
                            hn::Vec<FrontTag> a3, double* to) {
  const FrontTag d;
  const auto l1 = hn::Mul(a1, hn::Set(d, head.r[0]));
  hn::Store(l1, d, to);
  if (columns >= 2) {
    const auto l2 = hn::Mul(hn::Sub(a2, hn::Mul(l1, hn::Set(d, head.u1))), hn::Set(d, head.r[1]));
    hn::Store(l2, d, to + panel_rows);
    if (columns == 3) {
      const auto rest = hn::Sub(hn::Sub(a3, hn::Mul(hn::Set(d, head.u2), l1)), hn::Mul(l2, hn::Set(d, head.t)));
      hn::Store(hn::Mul(rest, hn::Set(d, head.r[2])), d, to + 2 * panel_rows);
    }
  }
}

// Turns the entries of a strip into multipliers, block after block.
inline void scale_strip(const Panel& panel, double* strip) {
  const FrontTag d;
  for (std::int64_t k = 0; k < panel.pivots; k += block_pivots) {
    const std::int64_t block = k / block_pivots;
    const std::int64_t columns = panel.pivots - k < block_pivots ? panel.pivots - k : block_pivots;
    double* const at = strip + k * panel_rows;
    hn::Vec<FrontTag> a[block_pivots][panel_vectors];
    for (std::int64_t q = 0; q < block_pivots; ++q) {
      for (int v = 0; v < panel_vectors; ++v) {
        a[q][v] = hn::Load(d, at + (q < columns ? q : 0) * panel_rows + v * lanes);
      }
    }
    for (std::int64_t p = 0; p < k; ++p) {
      for (std::int64_t q = 0; q < block_pivots; ++q) {
        const auto g = hn::Set(d, panel.before[block][p][q]);
        for (int v = 0; v < panel_vectors; ++v) {
          a[q][v] = hn::Add(hn::Mul(hn::Load(d, strip + p * panel_rows + v * lanes), g), a[q][v]);
        }
      }
    }
    for (int v = 0; v < panel_vectors; ++v) {
      scale_block(panel.head[block], columns, a[0][v], a[1][v], a[2][v], at + v * lanes);
    }
  }
}

// The strips end with the front's last row, and the last one overlaps the one before: its first rows are not stored.
// The front must have at least panel_rows rows.
inline void scale_rows_below(const Front& f, const Panel& panel) {
  alignas(64) double strip[panel_pivots * panel_rows];
  for (std::int64_t next = panel.pivots; next < f.n; next += panel_rows) {
    const std::int64_t row = next + panel_rows <= f.n ? next : f.n - panel_rows;
    load_strip<panel_vectors>(f, panel.pivots, row, strip);
    scale_strip(panel, strip);
    const auto bytes = static_cast<std::size_t>(row + panel_rows - next) * sizeof *strip;
    for (std::int64_t p = 0; p < panel.pivots; ++p) {
      std::memcpy(f.column(p) + next, strip + p * panel_rows + (next - row), bytes);
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
