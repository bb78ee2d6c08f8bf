// SPDX-License-Identifier: MIT
// The order of the scalar product's additions; sorts, sequences, copies and fills known exactly, and their limits.
#include <gtest/gtest.h>

#include <numeric>
#include <string>

#include "ZORTAVMatrixUtilities.h"
#include "ZORTAVSparseKernels.h"
#include "support/by_address.h"
#include "support/numbers.h"

namespace zortest {
namespace {

TEST(ScalarProduct, KeepsItsOrder) {
  Random random(35);
  for (int32_t n = -1; n <= 70; ++n) {
    const auto count = static_cast<std::size_t>(std::max(n, 0));
    for (const int32_t inc : {1, -2, 0}) {
      const std::vector<double> x = random.vector(2 * count + 1);
      const std::vector<double> y = random.vector(count + 1);
      double s[8] = {};
      for (int i = 0; i < n; ++i) {
        const int at = inc < 0 ? (n - 1 - i) * -inc : i * inc;
        s[inc == 1 ? i % 8 : 0] += x[static_cast<std::size_t>(at)] * y[static_cast<std::size_t>(i)];
      }
      const double expected = ((s[0] + s[4]) + (s[2] + s[6])) + ((s[1] + s[5]) + (s[3] + s[7]));
      const Guarded<double> gx(x, static_cast<std::size_t>(random.integer(0, 7)));
      ASSERT_TRUE(same_bits(expected, by_address(eaxscl, n, gx, inc, y, 1))) << n << " " << inc;
    }
  }
}

TEST(RecordSort, FollowsItsRuleForThePivot) {
  // Worked out by hand: splits at 1, at 2 (the key 2 that came second), at 1.
  std::vector<int32_t> a{2, 10, 1, 20, 2, 30, 1, 40};
  by_address(eaxsort, a, 2, 4, 1, std::vector<int32_t>(2));
  EXPECT_EQ(a, (std::vector<int32_t>{1, 20, 1, 40, 2, 10, 2, 30}));
  for (const int32_t few : {1, 0, -1}) {
    by_address(eaxsort, nullptr, 2, few, 1, nullptr);
  }
}

TEST(RandomNumbers, AreTheGeneratorsOwn) {
  int32_t seed = 1;
  double r = 0;
  eaxrnd(&seed, &r);
  EXPECT_EQ(r, 65539 / 2147483648.0);
  eaxrnd(&seed, &r);
  EXPECT_EQ(seed, 6 * 65539 - 9);  // 65539² = 6·65539 - 9 modulo 2^32
  for (const int32_t none : {0, INT32_MIN}) {
    int32_t stuck = none;
    eaxrnd(&stuck, &r);
    EXPECT_EQ(stuck, INT32_MIN);
    EXPECT_EQ(r, -1);
  }
}

TEST(TypedCopy, TakesTheLow32BitsOfItsProduct) {
  struct Case {
    int32_t type;
    int32_t count;
    std::size_t bytes;
  };
  for (const Case& c :
       {Case{5, -3, 24}, Case{3, -2, 8}, Case{-7, -2, 14}, Case{4, 1 << 30, 0}, Case{65537, 65536, 65536}}) {
    std::vector<unsigned char> from(70000);
    std::iota(from.begin(), from.end(), static_cast<unsigned char>(1));
    std::vector<unsigned char> moved = from;
    std::copy_n(from.begin(), c.bytes, moved.begin() + 3);
    eaxcpy(&c.type, &c.count, from.data(), from.data() + 3);
    EXPECT_EQ(from, moved) << c.type << " " << c.count;
  }
}

TEST(Clear, NothingForOtherTypesAndCounts) {
  struct Case {
    int32_t type, count;
    std::size_t cleared;
  };
  for (const Case& c :
       {Case{2, 5, 10}, Case{100, 3, 0}, Case{INT32_MAX, 3, 0}, Case{INT32_MIN, 0, 0}, Case{-8, -3, 0}}) {
    alignas(8) char bytes[64];
    std::fill_n(bytes, 64, '#');
    eaxraz(&c.type, bytes, &c.count);
    EXPECT_EQ(std::string(bytes, 64), std::string(c.cleared, '\0') + std::string(64 - c.cleared, '#')) << c.type;
  }
  for (const char* text : {"\xff trailing", ""}) {  // of which a fill takes the first byte
    std::string bytes(64, '#');
    by_address(eaxmac, bytes[3], 7, *text);
    EXPECT_EQ(bytes, "###" + std::string(7, text[0]) + std::string(54, '#'));
  }
}

}  // namespace
}  // namespace zortest
