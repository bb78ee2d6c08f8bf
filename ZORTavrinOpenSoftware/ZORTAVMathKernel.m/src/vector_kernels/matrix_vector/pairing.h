// SPDX-License-Identifier: MIT
// How the matrix-vector kernels cut the terms of one sum into pairs. Of n terms
//
//   the first `peel` (0 or 1) are added to the start value alone;
//   the next 2·pairs go in turn to two running sums: the first goes on from there, the second starts at 0;
//   the second is added to the first, and the terms left over are added to that one at a time.
//
// Without a pair there is no second sum.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zortav {

struct Pairing {
  std::int64_t peel = 0;
  std::int64_t pairs = 0;

  std::int64_t paired_end() const noexcept { return peel + 2 * pairs; }
};

// Pairs start on a boundary of a pair of x, which one peeled term may reach; there are none off an element's boundary.
inline Pairing contiguous_pairing(std::int64_t n, const double* x) noexcept {
  const std::uintptr_t past_pair = reinterpret_cast<std::uintptr_t>(x) % (2 * sizeof(double));
  if (n < 2 || past_pair % sizeof(double) != 0) {
    return {};
  }
  const std::int64_t peel = past_pair == 0 ? 0 : 1;
  const std::int64_t pairs = (n - peel) / 2;
  return {pairs > 0 ? peel : 0, pairs};
}

inline Pairing strided_pairing(std::int64_t n, std::int64_t incx) noexcept {
  return {0, incx == 0 ? 0 : n / 2};
}

// For the kernels that treat a product as contiguous only when both its vectors are.
inline Pairing pairing(std::int64_t n, const double* x, std::int64_t incx, std::int64_t incy) noexcept {
  return incx == 1 && incy == 1 ? contiguous_pairing(n, x) : strided_pairing(n, incx);
}

}  // namespace zortav
