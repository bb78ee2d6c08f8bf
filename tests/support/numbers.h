// SPDX-License-Identifier: MIT
// What the numerical tests share: seeded random numbers, guarded buffers at chosen misalignment, bit comparison.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace zortest {

inline constexpr double nan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double inf = std::numeric_limits<double>::infinity();

inline std::uint64_t bits(double x) {
  std::uint64_t b = 0;
  std::memcpy(&b, &x, sizeof b);
  return b;
}

// Equal to the last bit; any NaN equals any NaN.
inline bool same_bits(double x, double y) {
  return bits(x) == bits(y) || (x != x && y != y);
}

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  double uniform(double low = -1.0, double high = 1.0) {
    // Not std::uniform_real_distribution: its bits differ between standard libraries.
    return low + (high - low) * (static_cast<double>(engine_() >> 11) * 0x1p-53);
  }
  int integer(int low, int high) {
    const auto count = static_cast<std::uint64_t>(std::int64_t{high} - low + 1);
    return static_cast<int>(low + static_cast<std::int64_t>(engine_() % count));
  }
  std::vector<double> vector(std::size_t n, double low = -1.0, double high = 1.0) {
    std::vector<double> v(n);
    for (double& x : v) {
      x = uniform(low, high);
    }
    return v;
  }

 private:
  std::mt19937_64 engine_;
};

// An array between guard words, starting `offset` elements and `bytes` bytes past a 64-byte boundary. With bytes that
// are no multiple of the elements' alignment, only data() and values() may be used.
template <class T>
class Guarded {
 public:
  explicit Guarded(std::size_t n, std::size_t offset = 0, std::size_t bytes = 0)
      : n_(n), store_(line + 2 * guard + (n + offset) * sizeof(T) + bytes) {
    const auto address = reinterpret_cast<std::uintptr_t>(store_.data());
    first_ = (line - address % line) + guard + offset * sizeof(T) + bytes;
    for (std::size_t at = first_ % sizeof(T); at + sizeof(T) <= store_.size(); at += sizeof(T)) {
      std::copy(guard_word.begin(), guard_word.end(), store_.data() + at);
    }
  }
  Guarded(const std::vector<T>& v, std::size_t offset, std::size_t bytes = 0) : Guarded(v.size(), offset, bytes) {
    std::copy_n(reinterpret_cast<const unsigned char*>(v.data()), n_ * sizeof(T), store_.data() + first_);
  }
  T* data() { return reinterpret_cast<T*>(store_.data() + first_); }
  const T* data() const { return reinterpret_cast<const T*>(store_.data() + first_); }
  T& operator[](std::size_t i) { return data()[i]; }
  const T& operator[](std::size_t i) const { return data()[i]; }
  std::size_t size() const { return n_; }
  std::vector<T> values() const {
    std::vector<T> v(n_);
    std::copy_n(store_.data() + first_, n_ * sizeof(T), reinterpret_cast<unsigned char*>(v.data()));
    return v;
  }

  bool intact() const {
    for (std::size_t at = first_ % sizeof(T); at + sizeof(T) <= store_.size(); at += sizeof(T)) {
      const bool inside = at >= first_ && at < first_ + n_ * sizeof(T);
      if (!inside && !std::equal(guard_word.begin(), guard_word.end(), store_.data() + at)) {
        return false;
      }
    }
    return true;
  }

 private:
  static constexpr std::size_t line = 64;
  static constexpr std::size_t guard = 2 * line;
  static constexpr auto guard_word = std::bit_cast<std::array<unsigned char, sizeof(T)>>(static_cast<T>(-123456789));
  std::size_t n_;
  std::size_t first_ = 0;
  std::vector<unsigned char> store_;
};

inline void expect_same_bits(const std::vector<double>& expected, const std::vector<double>& actual) {
  ASSERT_EQ(expected.size(), actual.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_TRUE(same_bits(expected[i], actual[i]))
        << "element " << i << ": expected " << expected[i] << ", got " << actual[i];
  }
}

}  // namespace zortest
