// SPDX-License-Identifier: MIT
// The matrix of a cube of nodes, each linked to its 26 neighbours, with one or more unknowns a node: the lower
// compressed rows, indices from 1, the diagonal last in its row.
#pragma once

#include <cstdint>
#include <vector>

#include "support/data.h"

namespace zorbench {

struct NodeCube {
  std::int32_t n = 0;
  std::vector<std::int32_t> colidx;
  std::vector<std::int32_t> rowptr{0};
  Numbers values;

  NodeCube(int edge, int unknowns) : n(edge * edge * edge * unknowns) {
    for (int node = 0; node < edge * edge * edge; ++node) {
      for (int u = 0; u < unknowns; ++u) {
        add_neighbours(node, edge, unknowns);
        for (int w = 0; w <= u; ++w) {
          add(node * unknowns + w);
        }
        values.back() = 27.0 * unknowns;
        rowptr.push_back(static_cast<std::int32_t>(colidx.size()));
      }
    }
  }
  std::int32_t nnz() const { return static_cast<std::int32_t>(colidx.size()); }

 private:
  void add(int column) {
    colidx.push_back(column + 1);
    values.push_back(-1.0 + 1e-3 * (column % 97));
  }
  void add_neighbours(int node, int edge, int unknowns) {
    const int at[3] = {node % edge, node / edge % edge, node / edge / edge};
    for (int k = -1; k <= 1; ++k) {
      for (int j = -1; j <= 1; ++j) {
        for (int i = -1; i <= 1; ++i) {
          const bool inside = at[0] + i >= 0 && at[0] + i < edge && at[1] + j >= 0 && at[1] + j < edge &&
                              at[2] + k >= 0 && at[2] + k < edge;
          const int other = node + i + edge * (j + edge * k);
          for (int w = 0; inside && other < node && w < unknowns; ++w) {
            add(other * unknowns + w);
          }
        }
      }
    }
  }
};

}  // namespace zorbench
