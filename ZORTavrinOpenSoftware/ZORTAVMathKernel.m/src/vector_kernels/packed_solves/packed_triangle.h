// SPDX-License-Identifier: MIT
// Where the columns of a packed triangle stand. Everything here has internal linkage: units compiled for different
// instruction sets share this text, not its code.
#pragma once

#include <cstddef>

namespace zortav {

// Column j (from 0) of an upper triangle packed by columns: element (i, j) is upper_column(ap, j)[i], i <= j.
static inline const double* upper_column(const double* ap, std::size_t j) noexcept {
  return ap + j * (j + 1) / 2;
}

// Column j (from 0) of a lower triangle of order n packed by columns: element (i, j) is lower_column(ap, n, j)[i],
// i >= j. The pointer lies inside the array: j rows are missing in front, but at least j elements stand there.
static inline const double* lower_column(const double* ap, std::size_t n, std::size_t j) noexcept {
  return ap + (2 * n - j - 1) * j / 2;
}

}  // namespace zortav
