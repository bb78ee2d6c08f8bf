// SPDX-License-Identifier: MIT
// The plan of a multifrontal factorization: which unknowns are eliminated together, in which order, in fronts of which
// rows.
//
// A front eliminates `pivots` consecutive unknowns and passes a full symmetric update of its other rows to its parent.
// Fronts whose pivots have nearly the same rows are merged, so that few zeros are stored and the fronts are large
// enough for dense kernels. Duff and Reid, "The multifrontal solution of indefinite sparse symmetric linear equations",
// ACM TOMS 9, 1983; Ashcraft and Grimes, "The influence of relaxed supernode partitions on the multifrontal method",
// TOMS 15, 1989.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "factorization/compressed_graph.h"
#include "factorization/index.h"
#include "services/array_memory.h"

namespace modal {

struct Front {
  std::int32_t first_pivot = 0;  // position in the elimination order, from 0
  std::int32_t pivots = 0;
  std::int32_t order = 0;  // pivots and the rows below them
  std::int32_t children = 0;
  std::int64_t first_row = 0;  // in AssemblyTree::row

  std::int32_t rows_below() const { return order - pivots; }
  // Entries of the factor's columns: the pivots' triangle and the rows below.
  std::int64_t factor_entries() const { return std::int64_t{pivots} * order - packed(pivots - 1); }
  std::int64_t update_entries() const { return packed(rows_below()); }

  // Entries of a triangle of order n.
  static std::int64_t packed(std::int64_t n) { return n * (n + 1) / 2; }
};

struct AssemblyTree {
  Array<std::int32_t> unknown;   // in elimination order, from 0
  Array<std::int32_t> position;  // of every unknown in that order, from 0
  std::vector<Front> front;      // in postorder: the children of a front are the latest updates not yet used
  Array<std::int32_t> row;       // rows below the pivots, front by front: positions from 1, ascending

  std::int64_t factor_entries = 0;
  std::int64_t stack_entries = 0;  // most update entries that wait at any time
  std::int32_t largest_front = 0;  // order

  std::int32_t order() const { return static_cast<std::int32_t>(unknown.size()); }
  std::span<const std::int32_t> rows_below(const Front& f) const {
    return std::span(row).subspan(at(f.first_row), at(f.rows_below()));
  }
};

// elimination_order: the vertices of the graph, as nested_dissection gives them. The tree's own order is another
// postorder of the same elimination tree, with the same fill. kept: the last so many vertices, which are all neighbours
// of each other, make the last front and stay last.
AssemblyTree assembly_tree(const CompressedGraph& compressed, const std::vector<std::int32_t>& elimination_order,
                           std::int32_t kept = 0);

}  // namespace modal
