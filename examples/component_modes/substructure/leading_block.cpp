// SPDX-License-Identifier: MIT
#include "substructure/leading_block.h"

#include "factorization/index.h"

namespace component {

modal::SymmetricMatrix leading_block(const modal::SymmetricMatrix& matrix, std::int32_t order) {
  modal::SymmetricMatrix block;
  const auto entries = static_cast<std::ptrdiff_t>(matrix.row_end[modal::at(order)]);
  block.order = order;
  block.row_end.assign(matrix.row_end.begin(), matrix.row_end.begin() + order + 1);
  block.column.assign(matrix.column.begin(), matrix.column.begin() + entries);
  block.value.assign(matrix.value.begin(), matrix.value.begin() + entries);
  return block;
}

}  // namespace component
