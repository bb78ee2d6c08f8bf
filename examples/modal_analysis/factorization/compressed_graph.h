// SPDX-License-Identifier: MIT
// The graph of a symmetric matrix with the unknowns of equal structure taken together.
//
// Two unknowns i and j belong to one vertex when adj(i) ∪ {i} = adj(j) ∪ {j}: no elimination order can tell them apart,
// so ordering and symbolic phase work on the vertices (Ashcraft, "Compressed graphs and the minimum degree algorithm",
// SIAM J. Sci. Comput. 16, 1995). The two displacements of a mesh node are such a pair.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "factorization/graph.h"
#include "factorization/index.h"
#include "structure/symmetric_matrix.h"

namespace modal {

struct CompressedGraph {
  Graph graph;                             // vertex weight = number of unknowns
  std::vector<std::int32_t> member_first;  // vertices + 1 entries
  std::vector<std::int32_t> member;        // unknowns (from 0) of each vertex, ascending

  std::span<const std::int32_t> members(std::int32_t v) const {
    const auto begin = at(member_first[at(v)]);
    const auto end = at(member_first[at(v) + 1]);
    return std::span(member).subspan(begin, end - begin);
  }
};

// Reads the pattern of the matrix, not its values. kind: where it is given, one number per unknown; unknowns of
// different kinds are kept apart.
CompressedGraph compress(const SymmetricMatrix& matrix, std::span<const std::uint8_t> kind = {});

}  // namespace modal
