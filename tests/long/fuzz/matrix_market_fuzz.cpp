// SPDX-License-Identifier: MIT
// Matrix Market files: refused with one line of text, or a triangle by rows whose diagonals stand last.
#include <cmath>

#include "hostile_input.h"
#include "structure/input_error.h"
#include "structure/matrix_market.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  modal::SymmetricMatrix matrix;
  try {
    matrix = modal::read_symmetric_matrix(zortest::as_file(data, size), 0);
  } catch (const modal::InputError& refusal) {
    zortest::promise(std::string(refusal.what()).find('\n') == std::string::npos, "the message is one line");
    return 0;
  }
  zortest::promise(matrix.order >= 1 && matrix.row_end.size() == static_cast<std::size_t>(matrix.order) + 1,
                   "an order");
  std::size_t k = 0;
  for (std::int32_t row = 1; row <= matrix.order; ++row) {
    const auto end = static_cast<std::size_t>(matrix.row_end[static_cast<std::size_t>(row)]);
    zortest::promise(end > k && end <= matrix.value.size(), "every row has its diagonal");
    for (; k < end; ++k) {
      const std::int32_t column = matrix.column[k];
      zortest::promise(k + 1 == end ? column == row : column >= 1 && column < row, "columns of the lower triangle");
      zortest::promise(std::isfinite(matrix.value[k]), "finite values");
    }
  }
  return 0;
}
