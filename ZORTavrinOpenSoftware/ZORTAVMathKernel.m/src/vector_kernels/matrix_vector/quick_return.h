// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace zortav {

// Whether y := alpha·op(A)·x + beta·y leaves y as it is without looking at it.
inline bool nothing_to_do(std::int32_t m, std::int32_t n, double alpha, double beta) noexcept {
  return m <= 0 || n <= 0 || (alpha == 0 && beta == 1);
}

}  // namespace zortav
