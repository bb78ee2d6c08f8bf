// SPDX-License-Identifier: MIT
// Operands: numbers on a boundary of 64 bytes, the same in every run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <random>
#include <vector>

namespace zorbench {

template <class T>
struct LineAligned {
  using value_type = T;
  static constexpr std::align_val_t line{64};
  LineAligned() = default;
  template <class U>
  explicit LineAligned(const LineAligned<U>& /*other*/) {}
  T* allocate(std::size_t n) { return static_cast<T*>(::operator new(n * sizeof(T), line)); }
  void deallocate(T* p, std::size_t /*n*/) { ::operator delete(p, line); }
  bool operator==(const LineAligned& /*other*/) const { return true; }
};

using Numbers = std::vector<double, LineAligned<double>>;

// Uniform in [-1, 1).
inline Numbers some_numbers(std::size_t n, std::uint64_t seed = 7) {
  std::mt19937_64 engine(seed);
  Numbers x(n);
  for (double& number : x) {
    number = static_cast<double>(engine() >> 11) * 0x1p-52 - 1.0;
  }
  return x;
}

inline std::size_t size(std::int32_t n) {
  return static_cast<std::size_t>(n);
}
inline std::size_t packed_size(std::int32_t n) {
  return size(n) * (size(n) + 1) / 2;
}

// n by n, symmetric, positive definite: the off-diagonal elements of a row together stay below its diagonal, n.
inline Numbers definite_full(std::int32_t n) {
  Numbers a = some_numbers(size(n) * size(n));
  for (std::size_t j = 0; j < size(n); ++j) {
    for (std::size_t i = 0; i < j; ++i) {
      a[j + i * size(n)] = a[i + j * size(n)];
    }
    a[j * (size(n) + 1)] = n;
  }
  return a;
}

// The upper triangle of a matrix packed by columns, which is its lower triangle packed by rows.
inline Numbers packed_upper(const Numbers& full, std::int32_t n) {
  Numbers ap;
  ap.reserve(packed_size(n));
  for (std::size_t j = 0; j < size(n); ++j) {
    for (std::size_t i = 0; i <= j; ++i) {
      ap.push_back(full[i + j * size(n)]);
    }
  }
  return ap;
}

// The lower triangle packed by columns.
inline Numbers packed_lower(const Numbers& full, std::int32_t n) {
  Numbers ap;
  ap.reserve(packed_size(n));
  for (std::size_t j = 0; j < size(n); ++j) {
    for (std::size_t i = j; i < size(n); ++i) {
      ap.push_back(full[i + j * size(n)]);
    }
  }
  return ap;
}

}  // namespace zorbench
