// SPDX-License-Identifier: MIT
// The row sweeps of eaxmvm over a fixed number of vectors. Included by sparse_kernel_unit.cpp only.
//
// For i = 1..nrows, d = A(i,i), and every stored a = A(i,j) of row i in its stored order:
//   s := d·x(i),  s := s + a·x(j),  [symmetric] y(j) := y(j) + a·x(i),  at the end y(i) := s.
// Each number of y sees exactly these operations in exactly this order, every product and sum rounded by itself;
// the vectors lie side by side in registers, and rows that begin alike are worked on together.
#pragma once

#include <cstdint>

#include "dispatch/kernel_unit.h"
#include "matrix_kernels/sparse_kernel_table.h"
#include "matrix_kernels/sparse_row_block.h"
#include "matrix_kernels/sparse_vector_group.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

void diagonal_product(std::int64_t n, const double* a, const double* x, double* y) {
  const hn::ScalableTag<double> d;
  constexpr auto lanes = static_cast<std::int64_t>(hn::MaxLanes(hn::ScalableTag<double>()));
  std::int64_t i = 0;
  for (; i + lanes <= n; i += lanes) {
    hn::StoreU(hn::Mul(hn::LoadU(d, a + i), hn::LoadU(d, x + i)), d, y + i);
  }
  for (; i < n; ++i) {
    y[i] = a[i] * x[i];
  }
}

// Rows i..i+height-1, whose first `shared` columns are those of row i.
template <int height, bool symmetric, class Group>
HWY_INLINE void sweep_rows(const SparseRows& a, std::int64_t i, std::int64_t shared, Group& group) {
  using Pack = typename Group::Pack;
  Pack xi[height];
  Pack s[height];
  const double* row[height];
  for (int r = 0; r < height; ++r) {
    xi[r] = group.x(i + r);
    s[r] = Group::product(a.values[row_diagonal(a, i + r)], xi[r]);
    row[r] = a.values + row_begin(a, i + r);
  }
  const std::int32_t* const columns = a.colidx + row_begin(a, i);
  for (std::int64_t p = 0; p < shared; ++p) {
    const std::int64_t j = std::int64_t{columns[p]} - 1;
    const Pack xj = group.x(j);
    for (int r = 0; r < height; ++r) {
      s[r] = Group::sum(s[r], Group::product(row[r][p], xj));
    }
    if constexpr (symmetric) {
      Pack yj = group.tiled_y(j);
      for (int r = 0; r < height; ++r) {
        yj = Group::sum(yj, Group::product(row[r][p], xi[r]));
      }
      group.set_tiled_y(j, yj);
    }
  }
  for (int r = 0; r < height; ++r) {
    const std::int64_t end = row_diagonal(a, i + r);
    for (std::int64_t p = row_begin(a, i + r) + shared; p < end; ++p) {
      const std::int64_t j = std::int64_t{a.colidx[p]} - 1;
      const double value = a.values[p];
      s[r] = Group::sum(s[r], Group::product(value, group.x(j)));
      if constexpr (symmetric) {
        group.add_y(j, Group::product(value, xi[r]));
      }
    }
    if constexpr (symmetric) {
      group.set_y(i + r, s[r]);
    } else {
      group.set_untiled_y(i + r, s[r]);
    }
  }
}

template <bool symmetric, class Group>
void sweep(const SparseRows& a, std::int64_t n, const double* x, double* y) {
  Group group(n, x, y);
  for (std::int64_t i = 0; i < a.nrows;) {
    const int height = symmetric && i > group.tiled_rows() ? 1 : row_block_height(a, i, symmetric);
    const std::int64_t columns = row_diagonal(a, i) - row_begin(a, i);
    if (height == 3) {
      sweep_rows<3, symmetric>(a, i, columns, group);
    } else if (height == 2) {
      sweep_rows<2, symmetric>(a, i, columns, group);
    } else {
      sweep_rows<1, symmetric>(a, i, 0, group);
    }
    i += height;
  }
  if constexpr (symmetric) {
    group.close();
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
