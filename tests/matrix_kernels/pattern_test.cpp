// SPDX-License-Identifier: MIT
// The transpose of a pattern, the pattern of Aᵀ·A and row pointers, worked out by hand; a matrix without columns.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "ZORTAVSparsePatterns.h"
#include "support/numbers.h"

namespace {

using Integers = std::vector<std::int32_t>;
using zortest::Guarded;

TEST(Pattern, TransposeAndProduct) {
  const std::int32_t rows = 3;
  const std::int32_t columns = 4;
  const Integers ptr{0, 2, 2, 5};
  const Integers idx{4, 1, 2, 4, 2};  // (1,4) (1,1), none, (3,2) (3,4) (3,2)
  Integers ptr_t(5), idx_t(5), ptr_p(5), mark(4), list(5, 99);
  std::int32_t total = 0;
  eaunle(&columns, &rows, nullptr, ptr.data(), idx.data(), ptr_t.data(), idx_t.data());
  EXPECT_EQ(ptr_t, (Integers{0, 1, 3, 3, 5}));
  EXPECT_EQ(idx_t, (Integers{1, 3, 3, 1, 3}));
  eaupnn(&columns, &rows, nullptr, ptr.data(), idx.data(), ptr_t.data(), idx_t.data(), mark.data(), ptr_p.data(),
         &total);
  EXPECT_EQ(ptr_p, (Integers{0, 1, 2, 2, 4}));
  EXPECT_EQ(total, 4);
  Integers idx_p(4);
  eaunln(&columns, nullptr, nullptr, ptr.data(), idx.data(), ptr_t.data(), idx_t.data(), list.data(), idx_p.data());
  EXPECT_EQ(idx_p, (Integers{4, 4, 1, 2}));
}

// Farther from the diagonal than 16 bits tell.
TEST(Pattern, ColumnsFarApart) {
  const std::int32_t rows = 2;
  const std::int32_t columns = 70000;
  const Integers ptr{0, 3, 4};
  const Integers idx{70000, 1, 40000, 2};
  Integers ptr_t(70001), idx_t(4), ptr_p(70001), mark(70000), list(70001), idx_p(6);
  std::int32_t total = 0;
  eaupnn(&columns, &rows, nullptr, ptr.data(), idx.data(), ptr_t.data(), idx_t.data(), mark.data(), ptr_p.data(),
         &total);
  ASSERT_EQ(total, 6);
  EXPECT_EQ((Integers{ptr_p[1], ptr_p[39999], ptr_p[40000], ptr_p[69999], ptr_p[70000]}), (Integers{2, 2, 4, 4, 6}));
  eaunln(&columns, nullptr, nullptr, ptr.data(), idx.data(), ptr_t.data(), idx_t.data(), list.data(), idx_p.data());
  EXPECT_EQ(idx_p, (Integers{40000, 70000, 1, 70000, 1, 40000}));
}

TEST(Pattern, WithoutColumns) {
  const std::int32_t none = 0;
  const Integers ptr{0};
  Guarded<std::int32_t> ptr_t(1), nothing(0), ptr_p(1), list(Integers{1}, 0);
  std::int32_t total = -1;
  eaunle(&none, &none, nullptr, ptr.data(), nullptr, ptr_t.data(), nothing.data());
  eaupnn(&none, &none, nullptr, ptr.data(), nullptr, ptr_t.data(), nothing.data(), nothing.data(), ptr_p.data(),
         &total);
  eaunln(&none, nullptr, nullptr, ptr.data(), nullptr, ptr_t.data(), nothing.data(), list.data(), nothing.data());
  EXPECT_TRUE(ptr_t.intact() && nothing.intact() && ptr_p.intact() && list.intact());
  EXPECT_EQ((Integers{ptr_t[0], ptr_p[0], total}), (Integers{0, 0, 0}));
}

// A row's pointer is its entry of the largest number, in whatever order they come; a row without one repeats the row
// before it. The entries after the first m count their rows from p + 1 on.
TEST(RowPointers, AreTheLastEntriesOfTheRowsOfBothBlocks) {
  const std::int32_t q = 7, m = 4, p = 3, nrows = 6;
  const Integers row_of{2, 1, 2, 1, 3, 1, 1};
  Integers ptr(7, 99);
  eaupne(&q, &m, &p, &nrows, row_of.data(), ptr.data());
  EXPECT_EQ(ptr, (Integers{0, 4, 3, 3, 7, 7, 5}));
}

}  // namespace
