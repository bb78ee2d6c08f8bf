// SPDX-License-Identifier: MIT
// The Cholesky factorization of rows of a packed triangle, one element at a time in the stated order of the sums.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/numbers.h"

namespace zortest::factor {

using Numbers = std::vector<double>;

// Indices from 1.
inline std::size_t place(std::size_t i, std::size_t j) {
  return i * (i - 1) / 2 + j - 1;
}

template <class Term>
double ordered_sum(std::size_t len, double start, Term term) {
  std::size_t k = 1;
  if (len >= 9) {
    double odd = start;
    double even = 0;
    for (; k + 7 <= len; k += 8) {
      for (std::size_t s = 0; s < 8; s += 2) {
        odd += term(k + s);
        even += term(k + s + 1);
      }
    }
    start = odd + even;
  }
  for (; k <= len; ++k) {
    start += term(k);
  }
  return start;
}

struct Outcome {
  int32_t ierr = 0;
  double piv = 777;  // a value that no pivot takes: stays when none is refused
};

inline Outcome in_stated_order(Numbers& a, std::size_t n1, std::size_t n2, double tol) {
  const auto at = [&a](std::size_t i, std::size_t j) -> double& { return a[place(i, j)]; };
  for (std::size_t i = n1; i <= n2; ++i) {
    for (std::size_t j = 1; j < i; ++j) {
      const std::size_t before = (j - 1) / 4 * 4;
      double t = ordered_sum(before, -at(i, j), [&](std::size_t k) { return at(i, k) * at(j, k); });
      for (std::size_t k = before + 1; k < j; ++k) {
        t = t + at(i, k) * at(j, k);
      }
      at(i, j) = t / -at(j, j);
    }
    const double d = at(i, i) - ordered_sum(i - 1, 0, [&](std::size_t k) { return at(i, k) * at(i, k); });
    if (tol >= d) {
      return {static_cast<int32_t>(i), d};
    }
    at(i, i) = std::sqrt(d);
  }
  return {};
}

inline Numbers positive_definite(Random& random, std::size_t n) {
  Numbers a = random.vector(n * (n + 1) / 2);
  for (std::size_t i = 1; i <= n; ++i) {
    a[place(i, i)] = static_cast<double>(n) * random.uniform(0.8, 1.2) + 1;
  }
  return a;
}

}  // namespace zortest::factor
