// SPDX-License-Identifier: MIT
// Strided and misaligned vectors, and the fixed order of summation, for the tests of the vector kernels.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "support/numbers.h"

namespace zortest {

inline constexpr std::int32_t increments[] = {1, -1, 2, -2, 3, 0};

// Where element i (from 0) of n lies when a negative increment walks backwards.
inline std::size_t place(int i, int n, int inc) {
  return static_cast<std::size_t>(inc >= 0 ? i * inc : (n - 1 - i) * -inc);
}

// How many elements the walk reaches over, and a few that it must leave alone.
inline std::size_t reach(int n, int inc) {
  return n <= 0 ? 5 : static_cast<std::size_t>((n - 1) * std::abs(inc) + 1) + 2;
}

// Numbers of both signs over many binades, whose sum depends on the order of the additions.
inline std::vector<double> spread(Random& random, std::size_t n) {
  std::vector<double> v(n);
  for (double& x : v) {
    x = std::ldexp(random.uniform(), random.integer(-12, 12));
  }
  return v;
}

// Elements that lie four bytes past their own boundary.
class OffBoundary {
 public:
  explicit OffBoundary(const std::vector<double>& v) : n_(v.size()), bytes_(sizeof(double) * v.size() + 16) {
    for (std::size_t i = 0; i < n_; ++i) {
      std::memcpy(data() + i, &v[i], sizeof v[i]);
    }
  }
  double* data() { return reinterpret_cast<double*>(bytes_.data() + 4); }
  std::vector<double> values() {
    std::vector<double> v(n_);
    for (std::size_t i = 0; i < n_; ++i) {
      std::memcpy(&v[i], static_cast<const void*>(data() + i), sizeof v[i]);
    }
    return v;
  }

 private:
  std::size_t n_;
  std::vector<unsigned char> bytes_;
};

enum class Order { one_by_one, groups, groups_after_peel };

// The order of a contiguous vector, given by its address.
inline Order contiguous_order(const double* x) {
  const auto address = reinterpret_cast<std::uintptr_t>(x);
  return address % 8 != 0 ? Order::one_by_one : address % 16 != 0 ? Order::groups_after_peel : Order::groups;
}

// The sum of the terms with two accumulators of two lanes.
inline double sum_in_order(const std::vector<double>& term, Order order) {
  const std::size_t peel = order == Order::groups_after_peel ? 1 : 0;
  double sum = 0;
  std::size_t i = 0;
  if (order != Order::one_by_one && term.size() >= 8 + peel) {
    double first[2] = {0, 0};
    double second[2] = {0, 0};
    if (peel == 1) {
      first[0] += term[i++];
    }
    for (; term.size() - i >= 8; i += 8) {
      for (std::size_t lane = 0; lane < 2; ++lane) {
        first[lane] = (first[lane] + term[i + lane]) + term[i + 4 + lane];
        second[lane] = (second[lane] + term[i + 2 + lane]) + term[i + 6 + lane];
      }
    }
    sum = (first[0] + second[0]) + (first[1] + second[1]);
  }
  for (; i < term.size(); ++i) {
    sum += term[i];
  }
  return sum;
}

}  // namespace zortest
