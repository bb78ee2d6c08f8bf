// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "ZORTAVMatrixUtilities.h"
#include "matrix_kernels/utilities/sort_oracle.h"
#include "support/numbers.h"

namespace zortest {
namespace {

// Sorts records of `width` integers with the given keys; the others tell which record it was. Returns whether equal
// keys kept their order.
bool expect_rule(const std::vector<int>& keys, std::size_t width, std::size_t key) {
  std::vector<int32_t> a;
  std::vector<Record> records;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    for (std::size_t k = 1; k <= width; ++k) {
      a.push_back(k == key ? keys[i] : static_cast<int32_t>(100 * i + k));
    }
    records.push_back({keys[i], static_cast<int>(i)});
  }
  const std::vector<int32_t> before = a;
  Guarded<int32_t> sorted(a, 1);
  Guarded<int32_t> work(width, 1);
  const auto width32 = static_cast<int32_t>(width);
  const auto count = static_cast<int32_t>(keys.size());
  const auto key32 = static_cast<int32_t>(key);
  eaxsort(sorted.data(), &width32, &count, &key32, work.data());
  EXPECT_TRUE(sorted.intact() && work.intact());

  const std::vector<Record> expected = SortByTheRule(records).records();
  bool stable = true;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const auto from = before.begin() + static_cast<std::ptrdiff_t>(static_cast<std::size_t>(expected[i].name) * width);
    if (!std::equal(from, from + width32, sorted.data() + i * width)) {
      ADD_FAILURE() << "record " << i << " of " << keys.size();
      return false;
    }
    if (i > 0) {
      EXPECT_LE(expected[i - 1].key, expected[i].key);
      stable = stable && (expected[i - 1].key < expected[i].key || expected[i - 1].name < expected[i].name);
    }
  }
  return stable;
}

TEST(RecordSort, FollowsItsRuleForThePivot) {
  Random random(38);
  int unstable = 0;
  for (int count = 0; count <= 120; ++count) {
    const auto size = static_cast<std::size_t>(count);
    for (const int keys : {1, 2, 3, 10, 1000}) {
      std::vector<int> key(size);
      std::generate(key.begin(), key.end(), [&] { return random.integer(-keys, keys - 1); });
      const auto width = static_cast<std::size_t>(random.integer(1, 5));
      unstable += expect_rule(key, width, static_cast<std::size_t>(random.integer(1, static_cast<int>(width)))) ? 0 : 1;
      std::sort(key.begin(), key.end());
      expect_rule(key, 2, 1);
      std::sort(key.begin(), key.end(), std::greater<>());
      expect_rule(key, 3, 2);
    }
  }
  EXPECT_GT(unstable, 200) << "the rule would not be seen";
  std::vector<int> extremes{INT32_MAX, INT32_MIN, 0, -1, INT32_MIN, INT32_MAX, 1};
  expect_rule(extremes, 1, 1);
  std::vector<int> many(50000);
  std::generate(many.begin(), many.end(), [&] { return random.integer(0, 40000); });
  expect_rule(many, 2, 2);
}

TEST(RecordSort, SmallCases) {
  // Worked out by hand: splits at 1, at 2 (the key 2 that came second), at 1.
  std::vector<int32_t> a{2, 10, 1, 20, 2, 30, 1, 40};
  const int32_t two = 2;
  const int32_t four = 4;
  const int32_t one = 1;
  std::vector<int32_t> work(2);
  eaxsort(a.data(), &two, &four, &one, work.data());
  EXPECT_EQ(a, (std::vector<int32_t>{1, 20, 1, 40, 2, 10, 2, 30}));

  std::vector<int32_t> equal{7, 1, 7, 2, 7, 3, 7, 4};
  const std::vector<int32_t> before = equal;
  eaxsort(equal.data(), &two, &four, &one, work.data());
  EXPECT_EQ(equal, before);
  for (const int32_t few : {1, 0, -1}) {
    eaxsort(nullptr, &two, &few, &one, nullptr);
  }
}

}  // namespace
}  // namespace zortest
