// SPDX-License-Identifier: MIT
// The transpose of a pattern and the pattern of Aᵀ·A against the same on a dense matrix of truth values.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "ZORTAVSparsePatterns.h"
#include "support/numbers.h"

using namespace zortest;

namespace {

using Integers = std::vector<std::int32_t>;

struct Pattern {
  int nrow = 0;
  int ncol = 0;
  Integers ptr{0};
  Integers idx;

  void add_row(const Integers& columns) {
    ++nrow;
    idx.insert(idx.end(), columns.begin(), columns.end());
    ptr.push_back(static_cast<std::int32_t>(idx.size()));
  }
};

// Rows in any order of columns, every column of a row with the probability percent.
Pattern random_pattern(int nrow, int ncol, int percent, Random& random) {
  Pattern a;
  a.ncol = ncol;
  for (int i = 0; i < nrow; ++i) {
    Integers columns;
    for (int j = 1; j <= ncol; ++j) {
      if (random.integer(1, 100) <= percent) {
        columns.insert(columns.begin() + random.integer(0, static_cast<int>(columns.size())), j);
      }
    }
    a.add_row(columns);
  }
  return a;
}

// Every array that the three calls fill, at the size that the caller owes.
struct Product {
  Integers ptr_t, idx_t, ptr_p, idx_p, list;
};

Product product(const Pattern& a) {
  const std::int32_t n = a.ncol;
  const std::int32_t nrow = a.nrow;
  const auto order = static_cast<std::size_t>(n);
  Guarded<std::int32_t> ptr_t(order + 1);
  Guarded<std::int32_t> idx_t(a.idx.size());
  Guarded<std::int32_t> mark(order);
  Guarded<std::int32_t> ptr_p(order + 1);
  std::int32_t total = -1;
  eaupnn(&n, &nrow, nullptr, a.ptr.data(), a.idx.data(), ptr_t.data(), idx_t.data(), mark.data(), ptr_p.data(), &total);
  EXPECT_EQ(total, ptr_p[order]);
  Guarded<std::int32_t> list(order + 1);
  Guarded<std::int32_t> idx_p(static_cast<std::size_t>(total));
  eaunln(&n, nullptr, nullptr, a.ptr.data(), a.idx.data(), ptr_t.data(), idx_t.data(), list.data(), idx_p.data());
  EXPECT_TRUE(ptr_t.intact() && idx_t.intact() && mark.intact() && ptr_p.intact() && list.intact() && idx_p.intact());

  // The transpose by itself is the same.
  Guarded<std::int32_t> ptr(order + 1);
  Guarded<std::int32_t> idx(a.idx.size());
  eaunle(&n, &nrow, nullptr, a.ptr.data(), a.idx.data(), ptr.data(), idx.data());
  EXPECT_TRUE(ptr.intact() && idx.intact());
  EXPECT_EQ(ptr.values(), ptr_t.values());
  EXPECT_EQ(idx.values(), idx_t.values());
  return {ptr_t.values(), idx_t.values(), ptr_p.values(), idx_p.values(), list.values()};
}

Product dense_product(const Pattern& a) {
  const auto rows = static_cast<std::size_t>(a.nrow);
  const auto columns = static_cast<std::size_t>(a.ncol);
  std::vector<std::vector<bool>> dense(rows, std::vector<bool>(columns));
  for (std::size_t i = 0; i < rows; ++i) {
    for (auto p = a.ptr[i]; p < a.ptr[i + 1]; ++p) {
      dense[i][static_cast<std::size_t>(a.idx[static_cast<std::size_t>(p)]) - 1] = true;
    }
  }
  Product expected;
  expected.ptr_t = expected.ptr_p = {0};
  std::int32_t first_of_last_row = a.ncol + 1;
  for (std::size_t c = 0; c < columns; ++c) {
    std::vector<bool> row(columns);
    for (std::size_t k = 0; k < rows; ++k) {
      if (dense[k][c]) {
        expected.idx_t.push_back(static_cast<std::int32_t>(k) + 1);
        for (std::size_t j = 0; j < columns; ++j) {
          row[j] = row[j] || (dense[k][j] && j != c);
        }
      }
    }
    expected.ptr_t.push_back(static_cast<std::int32_t>(expected.idx_t.size()));
    first_of_last_row = a.ncol + 1;
    for (std::size_t j = columns; j-- > 0;) {
      first_of_last_row = row[j] ? static_cast<std::int32_t>(j) + 1 : first_of_last_row;
    }
    for (std::size_t j = 0; j < columns; ++j) {
      if (row[j]) {
        expected.idx_p.push_back(static_cast<std::int32_t>(j) + 1);
      }
    }
    expected.ptr_p.push_back(static_cast<std::int32_t>(expected.idx_p.size()));
  }
  expected.list.assign(columns + 1, 0);
  expected.list[0] = first_of_last_row;
  return expected;
}

void expect_as_dense(const Pattern& a) {
  const Product expected = dense_product(a);
  const Product actual = product(a);
  EXPECT_EQ(actual.ptr_t, expected.ptr_t);
  EXPECT_EQ(actual.idx_t, expected.idx_t);
  EXPECT_EQ(actual.ptr_p, expected.ptr_p);
  EXPECT_EQ(actual.idx_p, expected.idx_p);
  EXPECT_EQ(actual.list, expected.list);
}

TEST(Pattern, TransposeAndProductMatchTheDenseMatrix) {
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Random random(seed);
    const int ncol = random.integer(1, 70);
    // Few entries give rows to sort, many give rows to walk through.
    expect_as_dense(random_pattern(random.integer(0, 60), ncol, random.integer(1, 6), random));
    expect_as_dense(random_pattern(random.integer(1, 12), ncol, random.integer(20, 100), random));
  }
  Random random(99);
  expect_as_dense(random_pattern(400, 900, 1, random));
}

TEST(Pattern, AColumnStoredTwiceInARowCountsOnceInTheProduct) {
  Pattern a;
  a.ncol = 4;
  a.add_row({4, 2, 4, 2});
  const Product p = product(a);
  EXPECT_EQ(p.ptr_t, (Integers{0, 0, 2, 2, 4}));
  EXPECT_EQ(p.idx_t, (Integers{1, 1, 1, 1}));
  EXPECT_EQ(p.ptr_p, (Integers{0, 0, 1, 1, 2}));
  EXPECT_EQ(p.idx_p, (Integers{4, 2}));
}

TEST(Pattern, SmallProducts) {
  Pattern identity;
  identity.ncol = 5;
  for (int i = 1; i <= 5; ++i) {
    identity.add_row({i});
  }
  EXPECT_EQ(product(identity).ptr_p, Integers(6, 0));

  Pattern row;
  row.ncol = 4;
  row.add_row({1, 3, 4});
  const Product p = product(row);
  EXPECT_EQ(p.ptr_t, (Integers{0, 1, 1, 2, 3}));
  EXPECT_EQ(p.ptr_p, (Integers{0, 2, 2, 4, 6}));
  EXPECT_EQ(p.idx_p, (Integers{3, 4, 1, 4, 1, 3}));

  const Product none = product(Pattern{});
  EXPECT_EQ(none.ptr_p, Integers{0});
}

}  // namespace
