// SPDX-License-Identifier: MIT
// Walking vectors of any increment and any alignment. A caller may hand over an array that does not even lie on its
// element's own boundary, so single elements are moved as bytes; the compilers make one plain load or store of each.
//
// Everything here has internal linkage: units compiled for different instruction sets share this text, not its code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zortav {

// Loops are unrolled, and sums are grouped, by this many elements.
inline constexpr std::int64_t group_size = 8;

// Through void*, so that no compiler assumes the alignment of T.
template <class T>
static inline T load_unaligned(const void* p) noexcept {
  T value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

static inline void store_unaligned(void* p, const void* value, std::size_t size) noexcept {
  std::memcpy(p, value, size);
}

template <class T>
static inline T element(const T* x, std::int64_t i) noexcept {
  return load_unaligned<T>(x + i);
}

template <class T>
static inline void set_element(T* x, std::int64_t i, T value) noexcept {
  store_unaligned(x + i, &value, sizeof value);
}

// Where a vector of n elements starts, counted from 0, when a negative increment walks it backwards.
static inline std::int64_t first_position(std::int64_t n, std::int64_t inc) noexcept {
  return inc < 0 ? (1 - n) * inc : 0;
}

// visit(i) for i = 0..n-1 in ascending order.
template <class Visit>
static inline void for_each_index(std::int64_t n, const Visit& visit) {
  std::int64_t i = 0;
  for (; i + group_size <= n; i += group_size) {
    for (std::int64_t j = 0; j < group_size; ++j) {
      visit(i + j);
    }
  }
  for (; i < n; ++i) {
    visit(i);
  }
}

}  // namespace zortav
