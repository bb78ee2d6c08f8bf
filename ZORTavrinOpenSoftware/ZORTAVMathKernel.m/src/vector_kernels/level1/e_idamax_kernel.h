// SPDX-License-Identifier: MIT
// Inner loop of e_idamax at unit increment. Included by vector_kernel_unit.cpp only.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vector_kernels/level1/damax_kernel.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

// The position of the first element whose magnitude is `size`; there must be one.
template <class D>
std::size_t first_of_magnitude(D d, std::size_t n, const double* x, double size) {
  constexpr std::size_t lanes = hn::MaxLanes(D());
  if constexpr (lanes == 1) {
    return 0;
  } else {
    if (n < lanes) {
      return first_of_magnitude(hn::CappedTag<double, lanes / 2>(), n, x, size);
    }
    const auto wanted = hn::Set(d, size);
    const auto hits = [&](std::size_t at) HWY_ATTR { return hn::Eq(hn::Abs(hn::LoadU(d, x + at)), wanted); };
    std::size_t i = 0;
    if constexpr (lanes == 8) {
      // The hits of eight registers are the bits of one word.
      for (; i + 8 * lanes <= n; i += 8 * lanes) {
        std::uint64_t word = 0;
#pragma GCC unroll 8
        for (std::size_t r = 0; r < 8; ++r) {
          word |= std::uint64_t{hits(i + r * lanes).raw} << (r * lanes);
        }
        if (word != 0) {
          return i + static_cast<std::size_t>(__builtin_ctzll(word));
        }
      }
    } else {
      // Four vectors without a hit are passed over together.
      while (i + 4 * lanes < n && hn::AllFalse(d, hn::Or(hn::Or(hits(i), hits(i + lanes)),
                                                         hn::Or(hits(i + 2 * lanes), hits(i + 3 * lanes))))) {
        i += 4 * lanes;
      }
    }
    for (; i + lanes < n; i += lanes) {
      const auto hit = hn::FindFirstTrue(d, hits(i));
      if (hit >= 0) {
        return i + static_cast<std::size_t>(hit);
      }
    }
    // Ends with the last element; what it repeats of the one before holds no hit.
    i = n - lanes;
    return i + static_cast<std::size_t>(hn::FindFirstTrue(d, hits(i)));
  }
}

// Counted from 0; 0 when there are only NaNs.
std::size_t idamax(std::size_t n, const double* x) {
  constexpr std::size_t block = 512;
  double found = no_magnitude;
  std::size_t found_in = 0;
  for (std::size_t from = 0; from < n; from += block) {
    const double size = max_magnitude(n - from < block ? n - from : block, x + from);
    if (size > found) {
      found = size;
      found_in = from;
    }
  }
  if (found == no_magnitude) {
    return 0;
  }
  const std::size_t rest = n - found_in;
  return found_in + first_of_magnitude(Widest(), rest < block ? rest : block, x + found_in, found);
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
