// SPDX-License-Identifier: MIT
// A sparse symmetric matrix in lower compressed-row storage, the form that eaxmvm takes.
#pragma once

#include <cstdint>

#include "services/array_memory.h"

namespace modal {

// Row i (from 1) of the lower triangle holds positions row_end[i-1]+1 .. row_end[i] (from 1) of column and value; its
// off-diagonal entries have columns (from 1) below i, in ascending order, and its last entry is the diagonal.
struct SymmetricMatrix {
  std::int32_t order = 0;
  Array<std::int32_t> row_end{0};  // order + 1 entries, row_end[0] = 0
  Array<std::int32_t> column;
  Array<double> value;

  std::int32_t entries() const { return row_end.back(); }
};

}  // namespace modal
