// SPDX-License-Identifier: MIT
// Patterns of sparse matrices, and their transposes and products from dense counts of the entries.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/numbers.h"

namespace zortest {

using Integers = std::vector<std::int32_t>;

struct Pattern {
  std::int32_t nrow = 0;
  std::int32_t ncol = 0;
  Integers ptr{0};
  Integers idx = {};
};

// Up to `longest` columns a row, in any order and possibly twice.
inline Pattern random_pattern(int nrow, int ncol, int longest, Random& random) {
  Pattern a{.nrow = nrow, .ncol = ncol};
  for (int i = 0; i < nrow; ++i) {
    for (int e = random.integer(0, longest); e > 0; --e) {
      a.idx.push_back(random.integer(1, ncol));
    }
    a.ptr.push_back(static_cast<std::int32_t>(a.idx.size()));
  }
  return a;
}

// What the calls leave: the transpose, the product and the work array. Also what eaunle leaves by itself.
struct PatternProduct {
  Integers ptr_t = {}, idx_t = {}, ptr_p = {}, idx_p = {}, list = {};
};

inline PatternProduct dense_product(const Pattern& a) {
  const auto rows = static_cast<std::size_t>(a.nrow);
  std::vector<Integers> count(rows, Integers(static_cast<std::size_t>(a.ncol) + 1));
  for (std::size_t i = 0; i < rows; ++i) {
    for (auto p = a.ptr[i]; p < a.ptr[i + 1]; ++p) {
      ++count[i][static_cast<std::size_t>(a.idx[static_cast<std::size_t>(p)])];
    }
  }
  PatternProduct expected{.ptr_t = {0}, .ptr_p = {0}, .list = Integers(static_cast<std::size_t>(a.ncol) + 1)};
  expected.list[0] = a.ncol + 1;
  for (std::size_t c = 1; c <= static_cast<std::size_t>(a.ncol); ++c) {
    for (std::size_t k = 0; k < rows; ++k) {
      expected.idx_t.insert(expected.idx_t.end(), static_cast<std::size_t>(count[k][c]),
                            static_cast<std::int32_t>(k) + 1);
    }
    const auto before = static_cast<std::ptrdiff_t>(expected.idx_p.size());
    for (std::size_t j = 1; j <= static_cast<std::size_t>(a.ncol); ++j) {
      if (j != c && std::any_of(count.begin(), count.end(), [&](const Integers& row) { return row[c] * row[j] > 0; })) {
        expected.idx_p.push_back(static_cast<std::int32_t>(j));
      }
    }
    // The head of the list stays on the first column of the last row.
    const auto first = expected.idx_p.begin() + before;
    expected.list[0] = first == expected.idx_p.end() ? a.ncol + 1 : *first;
    expected.ptr_t.push_back(static_cast<std::int32_t>(expected.idx_t.size()));
    expected.ptr_p.push_back(static_cast<std::int32_t>(expected.idx_p.size()));
  }
  return expected;
}

}  // namespace zortest
