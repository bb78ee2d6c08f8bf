// SPDX-License-Identifier: MIT
// Lower triangles by rows for the sparse product's tests, and the product itself, written down operation by operation.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ZORTAVSparseKernels.h"
#include "support/numbers.h"

namespace zortest {

struct LowerRows {
  int n = 0;
  int nrows = 0;
  std::vector<std::int32_t> colidx;
  // rowptr(1) is documented as unread: a value that would be noticed
  std::vector<std::int32_t> rowptr{-1000000};
  std::vector<double> values;

  void close_row(Random& random) {
    ++nrows;
    colidx.push_back(-7777777);  // the diagonal's column is documented as unread
    while (values.size() < colidx.size()) {
      values.push_back(random.uniform());
    }
    rowptr.push_back(static_cast<std::int32_t>(colidx.size()));
  }
  // The count of entries is only compared with n; where it meets n by accident, another number says "not diagonal".
  std::int32_t nnz() const {
    const auto count = static_cast<std::int32_t>(colidx.size());
    return count == n ? count + 1 : count;
  }
};

// Rows of up to `longest` columns below the row, in any order and possibly twice; one entry in `one_in_above` may stand
// above its row (0: none).
inline LowerRows scattered_rows(int n, int nrows, int longest, int one_in_above, Random& random) {
  LowerRows a;
  a.n = n;
  for (int i = 1; i <= nrows; ++i) {
    const int count = random.integer(0, longest);
    for (int e = 0; e < count; ++e) {
      if (one_in_above > 0 && random.integer(1, one_in_above) == 1) {
        a.colidx.push_back(random.integer(1, n));
      } else if (i > 1) {
        a.colidx.push_back(random.integer(1, i - 1));
      }
    }
    a.close_row(random);
  }
  return a;
}

// Rows of nodes with several unknowns each, as a finite-element mesh gives them: ascending, alike within a node. Then
// `changes` column indices, each of one row or of all rows of a node, are replaced by others, so that rows are almost
// alike, and columns stand twice or above their row.
inline LowerRows node_rows(int nodes, int unknowns, int neighbours, int nrows, int changes, Random& random) {
  LowerRows a;
  a.n = nodes * unknowns;
  for (int node = 0; node < nodes; ++node) {
    std::vector<int> linked;
    for (int k = 0; k < neighbours && node > 0; ++k) {
      linked.push_back(random.integer(std::max(0, node - 9), node - 1));
    }
    std::sort(linked.begin(), linked.end());
    linked.erase(std::unique(linked.begin(), linked.end()), linked.end());
    for (int u = 0; u < unknowns && a.nrows < nrows; ++u) {
      for (const int other : linked) {
        for (int w = 1; w <= unknowns; ++w) {
          a.colidx.push_back(other * unknowns + w);
        }
      }
      for (int w = 1; w <= u; ++w) {
        a.colidx.push_back(node * unknowns + w);
      }
      a.close_row(random);
    }
  }
  const auto begin = [&](int row) { return row == 0 ? 0 : a.rowptr[static_cast<std::size_t>(row)]; };
  const auto count = [&](int row) { return begin(row + 1) - 1 - begin(row); };
  const auto column = [&](int row, int place) -> std::int32_t& {
    return a.colidx[static_cast<std::size_t>(begin(row) + place)];
  };
  for (; changes > 0; --changes) {
    const int row = random.integer(0, a.nrows - 1);
    if (count(row) == 0) {
      continue;
    }
    const int place = random.integer(0, count(row) - 1);
    const int other =
        random.integer(0, 2) == 0 ? random.integer(1, a.n) : column(row, random.integer(0, count(row) - 1));
    const bool whole_node = random.integer(0, 1) == 0;
    const int first = whole_node ? row - row % unknowns : row;
    const int last = whole_node ? std::min(first + unknowns, a.nrows) - 1 : row;
    for (int r = first; r <= last; ++r) {
      if (place < count(r)) {
        column(r, place) = other;
      }
    }
  }
  return a;
}

// The product in the documented order, one vector after the other.
inline std::vector<double> product_in_order(int mode, const LowerRows& a, int nvec, const std::vector<double>& x,
                                            std::vector<double> y) {
  const auto n = static_cast<std::size_t>(a.n);
  for (std::size_t v = 0; v < static_cast<std::size_t>(nvec); ++v) {
    const double* const xv = x.data() + v * n - 1;  // counted from 1
    double* const yv = y.data() + v * n - 1;
    if (mode == 1) {
      std::fill(yv + 1, yv + 1 + n, 0.0);
    }
    int p = 0;
    for (int i = 1; i <= a.nrows; ++i) {
      const int diagonal = a.rowptr[static_cast<std::size_t>(i)] - 1;
      double s = a.values[static_cast<std::size_t>(diagonal)] * xv[i];
      for (; p < diagonal; ++p) {
        const int j = a.colidx[static_cast<std::size_t>(p)];
        const double value = a.values[static_cast<std::size_t>(p)];
        s = s + value * xv[j];
        if (mode == 1) {
          yv[j] = yv[j] + value * xv[i];
        }
      }
      p = diagonal + 1;
      yv[i] = s;
    }
  }
  return y;
}

inline void call_eaxmvm(std::int32_t mode, const LowerRows& a, std::int32_t nvec, const double* x, double* y) {
  const std::int32_t nnz = a.nnz();
  eaxmvm(&mode, &nnz, &a.nrows, &a.n, &nvec, a.colidx.data(), a.rowptr.data(), a.values.data(), x, y);
}

}  // namespace zortest
