// SPDX-License-Identifier: MIT
// Strided and misaligned vectors, and the fixed order of summation, for the tests of the vector kernels.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
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

// The elements in the order of a walk that always starts at the first.
inline std::vector<double> walked(const std::vector<double>& x, int n, int inc) {
  std::vector<double> v(static_cast<std::size_t>(n > 0 ? n : 0));
  for (std::size_t i = 0; i < v.size(); ++i) {
    v[i] = x[i * static_cast<std::size_t>(std::abs(inc))];
  }
  return v;
}

// Numbers of both signs over many binades, whose sum depends on the order of the additions.
template <class T>
std::vector<T> spread(Random& random, std::size_t n) {
  std::vector<T> v(n);
  for (T& x : v) {
    x = static_cast<T>(std::ldexp(random.uniform(), random.integer(0, 24)));
  }
  return v;
}

inline constexpr int no_groups = -1;

// How many elements of a contiguous vector stand before its first group.
inline int peel(std::size_t at) {
  return at % 8 != 0 ? no_groups : at % 16 != 0 ? 1 : 0;
}

// The sum of the terms with two accumulators of two lanes, after `peeled` terms alone.
inline double sum_in_order(const std::vector<double>& term, int peeled) {
  double sum = 0;
  std::size_t i = 0;
  if (peeled != no_groups && static_cast<int>(term.size()) >= 8 + peeled) {
    double first[2] = {0, 0};
    double second[2] = {0, 0};
    if (peeled == 1) {
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
