// SPDX-License-Identifier: MIT
// Inner loops of eaxevp: the reflectors of a packed triangle applied to the columns of V, a block of them at a time.
//
// The product of a block's reflectors I - u·uᵀ/h is I - U·(D + L)⁻¹·Uᵀ with D = diag(h) and L the part of UᵀU below its
// diagonal: S := UᵀV and V := V - U·W are matrix products, and (D + L)·W = S is solved by substitution.
// Method: Schreiber and Van Loan, SIAM J. Sci. Stat. Comput. 10 (1989), in the form of Puglisi, ibid. 13 (1992).
// Included by eigen_kernel_unit.cpp only.
#pragma once

#include <cstddef>

#include "algorithms/eigen_kernel_table.h"
#include "algorithms/eigen_octet.h"
#include "dispatch/kernel_unit.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// Rows of the triangle that make a block: with 24 columns of V it stays in a second-level cache of a megabyte up to
// some 2000 elements a row.
constexpr std::size_t block_rows = 32;
constexpr std::size_t panel_columns = 24;

// The tiles of both products, as the registers hold them: reflectors x columns of V, and registers of rows x columns.
constexpr std::size_t tile_reflectors = 4 / octet_registers;
constexpr std::size_t tile_columns = register_lanes == octet ? 6 : 3;
constexpr std::size_t tile_registers = 4;
static_assert(block_rows % tile_reflectors == 0 && panel_columns % tile_columns == 0);

// Where the rows of a block differ in length they are copied, filled up with zeros: 31 rows and 7 elements at most.
constexpr std::size_t tail_elements = 40;
static_assert(tail_elements >= block_rows - 1 + octet - 1 && tail_elements % octet == 0);

// As many vectors as a tile may ask for; what lies beyond the last one repeats it, so that every tile is whole. Equal
// columns come to equal results.
template <std::size_t Count>
struct Vectors {
  const double* head[Count];  // elements 0..common-1
  const double* tail[Count];  // and from there on
};

struct ReflectorBlock {
  static constexpr std::size_t gram_width = block_rows + tile_columns - block_rows % tile_columns;

  std::size_t count;
  std::size_t common;  // whole octets that all rows have
  std::size_t end;     // elements of the longest row
  double inverse[block_rows];
  Vectors<gram_width> u;
  double tail[block_rows][tail_elements];
  double gram[block_rows][gram_width];

  std::size_t tail_length() const { return (end - common + octet - 1) / octet * octet; }
};

// s(r, c) := Σ x_r(k)·y_c(k) in eight lanes.
HWY_INLINE void multiply_tile(std::size_t common, std::size_t tail, const double* const* x_head,
                              const double* const* x_tail, const double* const* y_head, const double* const* y_tail,
                              double* s, std::size_t width) {
  Octet sum[tile_reflectors][tile_columns];
  for (auto& row : sum) {
    for (Octet& element : row) {
      element = zero_octet();
    }
  }
  const auto add = [&](std::size_t length, const double* const* x, const double* const* y)
      __attribute__((always_inline)) {
    const double* xr[tile_reflectors];
    const double* yc[tile_columns];
    for (std::size_t r = 0; r < tile_reflectors; ++r) {
      xr[r] = x[r];
    }
    for (std::size_t c = 0; c < tile_columns; ++c) {
      yc[c] = y[c];
    }
    for (std::size_t k = 0; k < length; k += octet) {
#pragma GCC unroll 4
      for (std::size_t part = 0; part < octet_registers; ++part) {
        const std::size_t at = k + part * register_lanes;
        Register u[tile_reflectors];
        for (std::size_t r = 0; r < tile_reflectors; ++r) {
          u[r] = hn::LoadU(tag, xr[r] + at);
        }
#pragma GCC unroll 6
        for (std::size_t c = 0; c < tile_columns; ++c) {
          const Register v = hn::LoadU(tag, yc[c] + at);
          for (std::size_t r = 0; r < tile_reflectors; ++r) {
            sum[r][c].part[part] = hn::Add(sum[r][c].part[part], hn::Mul(u[r], v));
          }
        }
      }
    }
  };
  add(common, x_head, y_head);
  add(tail, x_tail, y_tail);
  for (std::size_t r = 0; r < tile_reflectors; ++r) {
    for (std::size_t c = 0; c < tile_columns; ++c) {
      s[r * width + c] = joined(sum[r][c]);
    }
  }
}

// Gathers rows first..last-1 of the triangle, of which a is the first, but for those without a reflector.
HWY_INLINE void gather(const double* a, std::size_t first, std::size_t last, ReflectorBlock& block) {
  block.count = 0;
  std::size_t length[block_rows];
  for (std::size_t i = first; i < last; ++i) {
    if (a[i] != 0.0) {
      block.u.head[block.count] = a;
      block.inverse[block.count] = 1.0 / a[i];
      length[block.count] = i;
      ++block.count;
    }
    a += i + 1;
  }
  if (block.count == 0) {
    return;
  }
  block.common = length[0] / octet * octet;
  block.end = length[block.count - 1];
  for (std::size_t r = 0; r < block.count; ++r) {
    for (std::size_t k = 0; k < tail_elements; ++k) {
      block.tail[r][k] = block.common + k < length[r] ? block.u.head[r][block.common + k] : 0.0;
    }
    block.u.tail[r] = block.tail[r];
  }
  for (std::size_t r = block.count; r < block.gram_width; ++r) {
    block.u.head[r] = block.u.head[block.count - 1];
    block.u.tail[r] = block.u.tail[block.count - 1];
  }
  for (std::size_t r = 0; r < block.count; r += tile_reflectors) {
    for (std::size_t c = 0; c < r + tile_reflectors; c += tile_columns) {
      multiply_tile(block.common, block.tail_length(), block.u.head + r, block.u.tail + r, block.u.head + c,
                    block.u.tail + c, block.gram[r] + c, block.gram_width);
    }
  }
}

// Columns of V and what belongs to them.
struct ReflectedPanel {
  std::size_t columns;  // a multiple of tile_columns
  double* head[panel_columns];
  double* tail[panel_columns];
  double copy[panel_columns][tail_elements];
  alignas(64) double s[block_rows][panel_columns];  // Uᵀ·V, then W

  void multiply(const ReflectorBlock& block) {
    for (std::size_t c = 0; c < columns; c += tile_columns) {
      for (std::size_t r = 0; r < block.count; r += tile_reflectors) {
        multiply_tile(block.common, block.tail_length(), block.u.head + r, block.u.tail + r, head + c, tail + c,
                      s[r] + c, panel_columns);
      }
    }
  }

  // w(r) := (s(r) - Σ gram(r,q)·w(q))/h(r), q < r ascending.
  void solve(const ReflectorBlock& block) {
    constexpr std::size_t registers = panel_columns / register_lanes;
    constexpr std::size_t at_once = registers % 6 == 0 ? 6 : 3;
    for (std::size_t first = 0; first < registers; first += at_once) {
      for (std::size_t r = 0; r < block.count; ++r) {
        Register w[at_once];
        for (std::size_t q = 0; q < at_once; ++q) {
          w[q] = hn::LoadU(tag, s[r] + (first + q) * register_lanes);
        }
        for (std::size_t k = 0; k < r; ++k) {
          const Register g = hn::Set(tag, block.gram[r][k]);
          for (std::size_t q = 0; q < at_once; ++q) {
            w[q] = hn::Sub(w[q], hn::Mul(g, hn::LoadU(tag, s[k] + (first + q) * register_lanes)));
          }
        }
        const Register inverse = hn::Set(tag, block.inverse[r]);
        for (std::size_t q = 0; q < at_once; ++q) {
          hn::StoreU(hn::Mul(w[q], inverse), tag, s[r] + (first + q) * register_lanes);
        }
      }
    }
  }

  // v(k) := v(k) - Σ u_r(k)·w(r), r ascending, for Registers registers of rows of a tile's columns.
  template <std::size_t Registers>
  HWY_INLINE void update_tile(std::size_t count, const double* const* u, double* const* v, const double* w,
                              std::size_t k) const {
    Register x[tile_columns][Registers];
    for (std::size_t c = 0; c < tile_columns; ++c) {
      for (std::size_t q = 0; q < Registers; ++q) {
        x[c][q] = hn::LoadU(tag, v[c] + k + q * register_lanes);
      }
    }
    for (std::size_t r = 0; r < count; ++r) {
      Register ur[Registers];
      for (std::size_t q = 0; q < Registers; ++q) {
        ur[q] = hn::LoadU(tag, u[r] + k + q * register_lanes);
      }
#pragma GCC unroll 6
      for (std::size_t c = 0; c < tile_columns; ++c) {
        const Register factor = hn::Set(tag, w[c]);
        for (std::size_t q = 0; q < Registers; ++q) {
          x[c][q] = hn::Sub(x[c][q], hn::Mul(factor, ur[q]));
        }
      }
      w += panel_columns;
    }
    for (std::size_t c = 0; c < tile_columns; ++c) {
      for (std::size_t q = 0; q < Registers; ++q) {
        hn::StoreU(x[c][q], tag, v[c] + k + q * register_lanes);
      }
    }
  }

  void update(std::size_t count, std::size_t length, const double* const* u, double* const* v) const {
    constexpr std::size_t step = tile_registers * register_lanes;
    std::size_t k = 0;
    for (; k + step <= length; k += step) {
      for (std::size_t c = 0; c < columns; c += tile_columns) {
        update_tile<tile_registers>(count, u, v + c, s[0] + c, k);
      }
    }
    for (; k < length; k += register_lanes) {
      for (std::size_t c = 0; c < columns; c += tile_columns) {
        update_tile<1>(count, u, v + c, s[0] + c, k);
      }
    }
  }

  // At most panel_columns columns of V, of which v is the first.
  void reflect(std::size_t n, double* v, std::size_t these, const ReflectorBlock& block) {
    columns = (these + tile_columns - 1) / tile_columns * tile_columns;
    const std::size_t own_tail = block.end - block.common;
    for (std::size_t c = 0; c < columns; ++c) {
      head[c] = v + (c < these ? c : these - 1) * n;
      tail[c] = copy[c];
      for (std::size_t k = 0; k < tail_elements; ++k) {
        copy[c][k] = k < own_tail ? head[c][block.common + k] : 0.0;
      }
    }
    multiply(block);
    solve(block);
    update(block.count, block.common, block.u.head, head);
    update(block.count, block.tail_length(), block.u.tail, tail);
    for (std::size_t c = 0; c < these; ++c) {
      for (std::size_t k = 0; k < own_tail; ++k) {
        head[c][block.common + k] = copy[c][k];
      }
    }
  }
};

void reflect(std::size_t n, const double* a, double* v) {
  ReflectorBlock block;
  ReflectedPanel panel;
  for (std::size_t q = 0; q < block_rows * panel_columns; ++q) {
    panel.s[q / panel_columns][q % panel_columns] = 0.0;
  }
  for (std::size_t first = 2; first < n; first += block_rows) {
    gather(a + first * (first + 1) / 2, first, HWY_MIN(n, first + block_rows), block);
    for (std::size_t j = 0; j < n && block.count != 0; j += panel_columns) {
      panel.reflect(n, v + j * n, HWY_MIN(panel_columns, n - j), block);
    }
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
