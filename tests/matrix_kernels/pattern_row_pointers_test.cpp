// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "ZORTAVSparsePatterns.h"
#include "support/numbers.h"

using namespace zortest;

namespace {

using Integers = std::vector<std::int32_t>;

Integers row_pointers(std::int32_t m, std::int32_t p, std::int32_t nrows, const Integers& row_of) {
  const auto q = static_cast<std::int32_t>(row_of.size());
  Guarded<std::int32_t> ptr(static_cast<std::size_t>(nrows) + 1);
  eaupne(&q, &m, &p, &nrows, row_of.data(), ptr.data());
  EXPECT_TRUE(ptr.intact());
  return ptr.values();
}

TEST(RowPointers, SmallCases) {
  EXPECT_EQ(row_pointers(3, 3, 3, {1, 1, 3}), (Integers{0, 2, 2, 3}));
  EXPECT_EQ(row_pointers(0, 0, 3, {}), (Integers{0, 0, 0, 0}));
  EXPECT_EQ(row_pointers(0, 0, 0, {}), (Integers{0}));
  // Two blocks; the second counts its rows from 1 again, its first row is empty.
  EXPECT_EQ(row_pointers(3, 2, 5, {1, 2, 2, 2, 3, 3}), (Integers{0, 1, 3, 3, 4, 6}));
  // Nothing in the second block: its rows repeat the end of the first.
  EXPECT_EQ(row_pointers(2, 2, 4, {1, 1}), (Integers{0, 2, 2, 2, 2}));
  // Entries out of order: the largest entry number of a row wins.
  EXPECT_EQ(row_pointers(4, 3, 3, {2, 1, 3, 1}), (Integers{0, 4, 1, 3}));
}

TEST(RowPointers, SortedEntriesGiveTheCountsUpToEachRow) {
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Random random(seed);
    const int p = random.integer(1, 30);
    const int second = random.integer(1, 30);
    Integers upper(static_cast<std::size_t>(random.integer(0, 60)));
    Integers lower(static_cast<std::size_t>(random.integer(0, 60)));
    for (auto& row : upper) {
      row = random.integer(1, p);
    }
    for (auto& row : lower) {
      row = random.integer(1, second);
    }
    std::sort(upper.begin(), upper.end());
    std::sort(lower.begin(), lower.end());
    Integers expected{0};
    for (int l = 1; l <= p + second; ++l) {
      const auto in_upper = std::count_if(upper.begin(), upper.end(), [&](int row) { return row <= l; });
      const auto in_lower = std::count_if(lower.begin(), lower.end(), [&](int row) { return row + p <= l; });
      expected.push_back(static_cast<std::int32_t>(in_upper + in_lower));
    }
    Integers row_of = upper;
    row_of.insert(row_of.end(), lower.begin(), lower.end());
    EXPECT_EQ(row_pointers(static_cast<std::int32_t>(upper.size()), p, p + second, row_of), expected);
  }
}

}  // namespace
