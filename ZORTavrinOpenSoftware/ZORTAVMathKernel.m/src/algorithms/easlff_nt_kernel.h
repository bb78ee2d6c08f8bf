// SPDX-License-Identifier: MIT
// The front elimination, panel by panel. Included by factor_kernel_unit.cpp only.
#pragma once

#include <cstdint>

#include "algorithms/easlff_nt_block_kernel.h"
#include "algorithms/easlff_nt_panel_kernel.h"
#include "algorithms/easlff_nt_trailing_kernel.h"
#include "algorithms/easlff_nt_triangle_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// Below either, one sweep per block is faster (measured on Zen 4 with AVX2 and AVX-512).
constexpr Index panel_least_pivots = 4;
constexpr Index panel_least_rows = 24;

static_assert(front_strip_elements >= panel_pivots * (panel_pivots + strip_rows));  // the triangle's strips

// As few panels as there may be, of nearly the same number of pivots; only the last has blocks of fewer than three.
inline Index pivots_of_next_panel(Index left) {
  if (left <= panel_pivots) {
    return left;
  }
  const Index panels = (left + pivots_of_one_of_many - 1) / pivots_of_one_of_many;
  const Index blocks = (left + panels * block_pivots - 1) / (panels * block_pivots);
  return blocks * block_pivots;
}

inline void update_below(const Front& f, const Panel& panel, double* strips) {
  // Pivots left over from the blocks of three update the last diagonal of an odd trailing order in their own way.
  const Index left_over = panel.pivots % block_pivots;
  const bool own_last = left_over != 0 && (f.n - panel.pivots) % 2 != 0;
  double* const last = f.column(f.n - 1) + (f.n - 1);
  double value = *last;
  RowsBelow(f, panel, strips).update();
  if (own_last) {
    const Index whole = panel.pivots - left_over;
    for (Index p = 0; p < whole; ++p) {
      const double l = f.column(p)[f.n - 1];
      value = l * (-l * panel.d[p]) + value;
    }
    *last = last_diagonal(f, whole, left_over, panel.d + whole, value);
  }
}

bool eliminate_front(std::int64_t n, std::int64_t m, double* a, std::int64_t clear_to, PivotTest& test) {
  alignas(64) double strips[front_strip_elements];
  Front f{n, a};
  while (m >= panel_least_pivots && f.n >= panel_least_rows) {
    Panel panel(pivots_of_next_panel(m));
    if (!PanelTriangle(f, panel, strips).eliminate(test)) {
      // The front must be left as the steps up to the refused pivot leave it: take them one block at a time.
      return eliminate_blocks(f, panel.pivots, clear_to, test);
    }
    update_below(f, panel, strips);
    const Index done = f.diagonal(panel.pivots);
    f = Front{f.n - panel.pivots, f.a + done};
    clear_to -= done;
    m -= panel.pivots;
  }
  return eliminate_blocks(f, m, clear_to, test);
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
