// SPDX-License-Identifier: MIT
// The transpose of a pattern, the pattern of Aᵀ·A and row pointers, against the same on dense counts of entries.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "ZORTAVSparsePatterns.h"
#include "matrix_kernels/pattern_oracle.h"
#include "support/numbers.h"

using namespace zortest;

namespace {

PatternProduct product(const Pattern& a) {
  const auto order = static_cast<std::size_t>(a.ncol);
  Guarded<std::int32_t> ptr(order + 1), idx(a.idx.size()), ptr_t(order + 1), idx_t(a.idx.size());
  Guarded<std::int32_t> mark(order), ptr_p(order + 1), list(Integers(order + 1, a.ncol + 1), 0);
  std::int32_t total = -1;
  eaunle(&a.ncol, &a.nrow, nullptr, a.ptr.data(), a.idx.data(), ptr.data(), idx.data());
  eaupnn(&a.ncol, &a.nrow, nullptr, a.ptr.data(), a.idx.data(), ptr_t.data(), idx_t.data(), mark.data(), ptr_p.data(),
         &total);
  EXPECT_EQ(ptr.values(), ptr_t.values());
  EXPECT_EQ(idx.values(), idx_t.values());
  EXPECT_EQ(total, ptr_p[order]);
  Guarded<std::int32_t> idx_p(static_cast<std::size_t>(total));
  eaunln(&a.ncol, nullptr, nullptr, a.ptr.data(), a.idx.data(), ptr_t.data(), idx_t.data(), list.data(), idx_p.data());
  for (const auto* array : {&ptr, &idx, &ptr_t, &idx_t, &mark, &ptr_p, &list, &idx_p}) {
    EXPECT_TRUE(array->intact());
  }
  return {ptr_t.values(), idx_t.values(), ptr_p.values(), idx_p.values(), list.values()};
}

TEST(Pattern, TransposeAndProductMatchTheDenseMatrix) {
  Random random(99);
  std::vector<Pattern> patterns{{}, random_pattern(400, 500, 5, random)};
  for (int repeat = 0; repeat < 60; ++repeat) {
    const int ncol = random.integer(1, 70);
    // Few entries give rows to sort, many give rows to walk through.
    patterns.push_back(random_pattern(random.integer(0, 60), ncol, random.integer(1, 4), random));
    patterns.push_back(random_pattern(random.integer(1, 12), ncol, ncol, random));
  }
  for (const Pattern& a : patterns) {
    SCOPED_TRACE(testing::Message() << a.nrow << " rows, " << a.ncol << " columns, entries " << a.idx.size());
    const PatternProduct expected = dense_product(a);
    const PatternProduct actual = product(a);
    EXPECT_EQ(actual.ptr_t, expected.ptr_t);
    EXPECT_EQ(actual.idx_t, expected.idx_t);
    EXPECT_EQ(actual.ptr_p, expected.ptr_p);
    EXPECT_EQ(actual.idx_p, expected.idx_p);
    EXPECT_EQ(actual.list, expected.list);
  }
}

// A row's pointer is its entry of the largest number, in whatever order they come; a row without one repeats the row
// before it. The entries after the first m count their rows from p + 1 on.
TEST(RowPointers, AreTheLastEntriesOfTheRowsOfBothBlocks) {
  Random random(98);
  for (int repeat = 0; repeat < 200; ++repeat) {
    const std::int32_t p = random.integer(0, 9);
    const std::int32_t second = random.integer(0, 9);
    const std::int32_t nrows = p + second;
    const std::int32_t m = p == 0 ? 0 : random.integer(0, 20);
    const std::int32_t q = m + (second == 0 ? 0 : random.integer(0, 20));
    Integers row_of;
    Integers expected(static_cast<std::size_t>(nrows) + 1);
    for (std::int32_t e = 1; e <= q; ++e) {
      row_of.push_back(random.integer(1, e <= m ? p : second));
      expected[static_cast<std::size_t>(row_of.back() + (e <= m ? 0 : p))] = e;
    }
    for (std::size_t l = 1; l < expected.size(); ++l) {
      expected[l] = expected[l] == 0 ? expected[l - 1] : expected[l];
    }
    Guarded<std::int32_t> ptr(expected.size());
    eaupne(&q, &m, &p, &nrows, row_of.data(), ptr.data());
    EXPECT_EQ(ptr.values(), expected);
    EXPECT_TRUE(ptr.intact());
  }
}

}  // namespace
