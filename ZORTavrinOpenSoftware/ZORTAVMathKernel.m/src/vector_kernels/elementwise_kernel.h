// SPDX-License-Identifier: MIT
// How the elementwise updates cut a contiguous vector into registers. No element depends on another one, so the cut
// leaves no trace in the results.
#pragma once

#include <cstddef>
#include <cstdint>

#include "dispatch/kernel_unit.h"
#include "vector_kernels/strided.h"

namespace zortav::ZORTAV_LEVEL {
namespace {

using Widest = hn::ScalableTag<double>;

// The vector headers take a single element through its own type, which would assume that it is aligned.
template <class D>
hn::Vec<D> load(D d, const double* p) {
  if constexpr (hn::MaxLanes(d) == 1) {
    return hn::Set(d, element(p, 0));
  } else {
    return hn::LoadU(d, p);
  }
}

template <class D>
void store(D d, hn::Vec<D> v, double* p) {
  if constexpr (hn::MaxLanes(d) == 1) {
    set_element(p, 0, hn::GetLane(v));
  } else {
    hn::StoreU(v, d, p);
  }
}

// Shorter vectors do not repay the pieces that lead up to a boundary.
constexpr std::size_t worth_aligning = 64;

// piece(d, i) for the fewer than 2·limit elements up to `to_boundary`, by powers of two, so that each piece lies on the
// boundary of its own size.
template <std::size_t limit, class Piece>
HWY_INLINE std::size_t first_pieces(std::size_t to_boundary, const Piece& piece) {
  std::size_t i = 0;
  if constexpr (limit > 1) {
    i = first_pieces<limit / 2>(to_boundary, piece);
  }
  if ((to_boundary & limit) != 0) {
    piece(hn::CappedTag<double, limit>(), i);
    i += limit;
  }
  return i;
}

// piece(d, i) for the fewer than 2·limit elements from i to n, by powers of two.
template <std::size_t limit, class Piece>
HWY_INLINE void last_pieces(std::size_t i, std::size_t n, const Piece& piece) {
  if (n - i >= limit) {
    piece(hn::CappedTag<double, limit>(), i);
    i += limit;
  }
  if constexpr (limit > 1) {
    last_pieces<limit / 2>(i, n, piece);
  }
}

// piece(d, i) for the elements before the one where `aligned`, one of the arrays, reaches the boundary of a register, if
// n is large and it does; returns where that is.
template <class Piece>
HWY_INLINE std::size_t pieces_to_boundary(std::size_t n, const double* aligned, const Piece& piece) {
  constexpr std::size_t lanes = hn::MaxLanes(Widest());
  if (n >= worth_aligning) {
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(aligned);
    if (address % sizeof(double) == 0) {
      return first_pieces<lanes / 2>((0 - address / sizeof(double)) % lanes, piece);
    }
  }
  return 0;
}

// piece(d, i) for consecutive pieces of 0..n-1; a piece covers the lanes of d from element i. `written` is the array
// that is stored to.
template <class Piece>
HWY_INLINE void in_pieces(std::size_t n, const double* written, const Piece& piece) {
  constexpr std::size_t lanes = hn::MaxLanes(Widest());
  std::size_t i = pieces_to_boundary(n, written, piece);
  for (; i + 4 * lanes <= n; i += 4 * lanes) {
    for (std::size_t part = 0; part < 4; ++part) {
      piece(Widest(), i + part * lanes);
    }
  }
  for (; i + lanes <= n; i += lanes) {
    piece(Widest(), i);
  }
  last_pieces<lanes / 2>(i, n, piece);
}

}  // namespace
}  // namespace zortav::ZORTAV_LEVEL
