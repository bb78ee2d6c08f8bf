// SPDX-License-Identifier: MIT
// The front elimination, panel by panel. Included by factor_kernel_unit.cpp only.
#pragma once

#include <cstdint>

#include "algorithms/easlff_nt_block_kernel.h"
#include "algorithms/easlff_nt_panel_kernel.h"
#include "algorithms/easlff_nt_trailing_kernel.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// Below either, one sweep per block is faster (measured on Zen 4 with AVX2 and AVX-512).
constexpr std::int64_t panel_least_pivots = 12;
constexpr std::int64_t panel_least_rows = 64;
static_assert(panel_least_rows >= panel_rows);

// As few panels as there may be, of nearly the same number of pivots; only the last has blocks of fewer than three.
inline std::int64_t pivots_of_next_panel(std::int64_t left) {
  const std::int64_t panels = (left + panel_pivots - 1) / panel_pivots;
  const std::int64_t blocks = (left + panels * block_pivots - 1) / (panels * block_pivots);
  return panels == 1 ? left : blocks * block_pivots;
}

inline void apply_panel(const Front& f, const Panel& panel) {
  scale_rows_below(f, panel);
  // Pivots left over from the blocks of three update the last diagonal of an odd trailing order in their own way.
  const std::int64_t left_over = panel.pivots % block_pivots;
  const bool own_last = left_over != 0 && (f.n - panel.pivots) % 2 != 0;
  double* const last = f.column(f.n - 1) + (f.n - 1);
  double value = *last;
  update_trailing_triangle(f, panel);
  if (own_last) {
    const std::int64_t whole = panel.pivots - left_over;
    for (std::int64_t p = 0; p < whole; ++p) {
      const double l = f.column(p)[f.n - 1];
      value = l * (-l * panel.head[p / block_pivots].d[p % block_pivots]) + value;
    }
    const BlockHead& head = panel.head[whole / block_pivots];
    *last = left_over == 1 ? last_diagonal<1>(f, whole, head, value) : last_diagonal<2>(f, whole, head, value);
  }
}

bool eliminate_front(std::int64_t n, std::int64_t m, double* a, std::int64_t clear_to, PivotTest& test) {
  Panel panel;
  Front f{n, a};
  while (m >= panel_least_pivots && f.n >= panel_least_rows) {
    panel.pivots = pivots_of_next_panel(m);
    if (!eliminate_triangle(f, panel, test)) {
      // The front must be left as the steps up to the refused pivot leave it: take them one block at a time.
      return eliminate_blocks(f, panel.pivots, clear_to, test, nullptr);
    }
    apply_panel(f, panel);
    const std::int64_t done = f.diagonal(panel.pivots);
    f = Front{f.n - panel.pivots, f.a + done};
    clear_to -= done;
    m -= panel.pivots;
  }
  return eliminate_blocks(f, m, clear_to, test, nullptr);
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
