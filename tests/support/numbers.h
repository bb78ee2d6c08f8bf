// SPDX-License-Identifier: MIT
// What the numerical tests share: seeded random numbers, guarded buffers at chosen misalignment, bit comparison.
#pragma once

#include <gtest/gtest.h>

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
    return low + static_cast<int>(engine_() % static_cast<std::uint64_t>(high - low + 1));
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

// An array between guard words, starting `offset` elements past a 64-byte boundary.
template <class T>
class Guarded {
 public:
  explicit Guarded(std::size_t n, std::size_t offset = 0) : n_(n), store_(n + offset + 2 * guard + line) {
    const auto address = reinterpret_cast<std::uintptr_t>(store_.data() + guard);
    const std::size_t to_line = ((64 - address % 64) % 64) / sizeof(T);
    first_ = guard + to_line + offset;
    for (T& x : store_) {
      x = guard_word();
    }
  }
  Guarded(const std::vector<T>& v, std::size_t offset) : Guarded(v.size(), offset) {
    for (std::size_t i = 0; i < n_; ++i) {
      data()[i] = v[i];
    }
  }
  T* data() { return store_.data() + first_; }
  const T* data() const { return store_.data() + first_; }
  T& operator[](std::size_t i) { return data()[i]; }
  const T& operator[](std::size_t i) const { return data()[i]; }
  std::size_t size() const { return n_; }
  std::vector<T> values() const { return std::vector<T>(data(), data() + n_); }

  bool intact() const {
    for (std::size_t i = 0; i < store_.size(); ++i) {
      const bool inside = i >= first_ && i < first_ + n_;
      if (!inside && store_[i] != guard_word()) {
        return false;
      }
    }
    return true;
  }

 private:
  static constexpr std::size_t guard = 16;
  static constexpr std::size_t line = 64 / sizeof(T);
  static T guard_word() { return static_cast<T>(-123456789); }
  std::size_t n_;
  std::size_t first_ = 0;
  std::vector<T> store_;
};

inline void expect_same_bits(const std::vector<double>& expected, const std::vector<double>& actual) {
  ASSERT_EQ(expected.size(), actual.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_TRUE(same_bits(expected[i], actual[i]))
        << "element " << i << ": expected " << expected[i] << ", got " << actual[i];
  }
}

}  // namespace zortest
