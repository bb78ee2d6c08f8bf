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

// f(Row<from>()), ..., f(Row<to - 1>()): the rows of a block as constants, so that what belongs to a row stays in
// registers.
template <int r>
struct Row {
  static constexpr int index = r;
};
template <int from, int to, class F>
HWY_INLINE void for_rows(const F& f) {
  if constexpr (from < to) {
    f(Row<from>());
    for_rows<from + 1, to>(f);
  }
}

// The end of row i (counted from 1): y(i) := s.
template <bool symmetric, class Group>
HWY_INLINE void assign(const Group& group, std::int64_t i, const typename Group::Pack& s) {
  if constexpr (symmetric) {
    group.set_y(i, s);
  } else {
    group.set_untiled_y(i, s);
  }
}

// A block of rows from row i (counted from 0) on, as row_block_height found it: columns and values begin with row i,
// the first `shared` columns are common to all.
template <int height, bool symmetric, class Group>
HWY_NOINLINE void row_block(const Group group, std::int64_t i, const std::int32_t* columns, const double* values,
                            std::int64_t shared) {
  using Pack = typename Group::Pack;
  Pack xi[height];
  Pack s[height];
  const double* row[height];
  for_rows<0, height>([&](auto r) HWY_ATTR {
    constexpr int k = decltype(r)::index;
    row[k] = values + k * (shared + 1) + k * (k - 1) / 2;
    xi[k] = group.x(i + 1 + k);
    s[k] = Group::product(row[k][shared + k], xi[k]);
  });
  for (std::int64_t p = 0; p < shared; ++p) {
    const std::int64_t j = columns[p];
    const Pack xj = group.x(j);
    Pack yj;
    if constexpr (symmetric) {
      yj = group.y(j);
    }
    for_rows<0, height>([&](auto r) HWY_ATTR {
      constexpr int k = decltype(r)::index;
      s[k] = Group::sum(s[k], Group::product(row[k][p], xj));
      if constexpr (symmetric) {
        yj = Group::sum(yj, Group::product(row[k][p], xi[k]));
      }
    });
    if constexpr (symmetric) {
      group.set_y(j, yj);
    }
  }
  // The block's own triangle: y of its rows is still in s, assigned where its row ends and added to from there on.
  for_rows<1, height>([&](auto r) HWY_ATTR {
    constexpr int k = decltype(r)::index;
    for_rows<0, k>([&](auto c) HWY_ATTR {
      constexpr int q = decltype(c)::index;
      s[k] = Group::sum(s[k], Group::product(row[k][shared + q], xi[q]));
      if constexpr (symmetric) {
        s[q] = Group::sum(s[q], Group::product(row[k][shared + q], xi[k]));
      }
    });
  });
  for_rows<0, height>([&](auto r) HWY_ATTR {
    constexpr int k = decltype(r)::index;
    assign<symmetric>(group, i + 1 + k, s[k]);
  });
}

// Entries p..end-1 of row i (counted from 1), the first of them in a column that lies in no tile, and the row's end.
template <class Group>
HWY_NOINLINE void untiled_rest(const Group group, const SparseRows a, std::int64_t i, std::int64_t p, std::int64_t end,
                               const typename Group::Pack& sum_before) {
  using Pack = typename Group::Pack;
  const Pack xi = group.x(i);
  Pack s = sum_before;
  for (; p < end; ++p) {
    const std::int64_t j = a.colidx[p];
    s = Group::sum(s, Group::product(a.values[p], group.x(j)));
    const Pack term = Group::product(a.values[p], xi);
    if (j > group.tiled_rows()) {
      group.add_untiled_y(j, term);
    } else {
      group.set_y(j, Group::sum(group.y(j), term));
    }
  }
  if (i > group.tiled_rows()) {
    group.set_untiled_y(i, s);
  } else {
    group.set_y(i, s);
  }
}

// Row i (counted from 0) with the off-diagonal entries begin..end-1.
template <bool symmetric, class Group>
HWY_INLINE void single_row(const Group& group, const SparseRows& a, std::int64_t i, std::int64_t begin,
                           std::int64_t end) {
  using Pack = typename Group::Pack;
  const Pack xi = group.x(i + 1);
  Pack s = Group::product(a.values[end], xi);
  std::int64_t p = begin;
  for (; p < end; ++p) {
    const std::int64_t j = a.colidx[p];
    if constexpr (symmetric && Group::has_untiled_rows) {
      if (j > group.tiled_rows()) [[unlikely]] {
        break;
      }
    }
    const double value = a.values[p];
    s = Group::sum(s, Group::product(value, group.x(j)));
    if constexpr (symmetric) {
      group.set_y(j, Group::sum(group.y(j), Group::product(value, xi)));
    }
  }
  if constexpr (symmetric && Group::has_untiled_rows) {
    if (p < end || i >= group.tiled_rows()) [[unlikely]] {
      // By reference: not every platform aligns vectors that are passed by value. The copy keeps s in registers.
      const Pack sum_before = s;
      untiled_rest(group, a, i + 1, p, end, sum_before);
      return;
    }
  }
  assign<symmetric>(group, i + 1, s);
}

template <bool symmetric, class Group>
void sweep(const SparseRows& rows, std::int64_t n, const double* x, double* y) {
  const SparseRows a = rows;
  const Group group(n, x, y);
  // Blocks are assigned to tiles without a test for each row.
  const std::int64_t block_rows = a.nrows < group.tiled_rows() ? a.nrows : group.tiled_rows();
  std::int64_t begin = 0;  // of row i's off-diagonal entries
  for (std::int64_t i = 0; i < a.nrows;) {
    const std::int64_t end = std::int64_t{a.rowptr[i + 1]} - 1;
    const int height = row_block_height(a.colidx, a.rowptr, block_rows, i, begin, end);
    if (height == 1) {
      single_row<symmetric>(group, a, i, begin, end);
    } else if (height == 2) {
      row_block<2, symmetric>(group, i, a.colidx + begin, a.values + begin, end - begin);
    } else {
      row_block<3, symmetric>(group, i, a.colidx + begin, a.values + begin, end - begin);
    }
    i += height;
    begin = a.rowptr[i];
  }
  if constexpr (symmetric) {
    group.close();
  }
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
