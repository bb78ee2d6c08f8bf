// SPDX-License-Identifier: MIT
// eaxrnd, eaxcpy.
#include <gtest/gtest.h>

#include <numeric>

#include "ZORTAVMatrixUtilities.h"
#include "support/numbers.h"

namespace zortest {
namespace {

TEST(RandomNumbers, AreTheGeneratorsOwn) {
  int32_t seed = 1;
  double r = 0;
  std::vector<int32_t> seeds{1};
  bool negative = false;
  for (int i = 0; i < 1000; ++i) {
    eaxrnd(&seed, &r);
    seeds.push_back(seed);
    ASSERT_EQ(r, seed / 2147483648.0);
    negative = negative || r < 0;
  }
  EXPECT_EQ(seeds[1], 65539);
  EXPECT_TRUE(negative);
  // 65539² = 6·65539 - 9 modulo 2^32.
  for (std::size_t i = 2; i < seeds.size(); ++i) {
    ASSERT_EQ(static_cast<uint32_t>(seeds[i]),
              6 * static_cast<uint32_t>(seeds[i - 1]) - 9 * static_cast<uint32_t>(seeds[i - 2]));
  }
  for (int32_t stuck : {0, INT32_MIN}) {
    for (int i = 0; i < 2; ++i) {
      eaxrnd(&stuck, &r);
      EXPECT_EQ(stuck, INT32_MIN);
      EXPECT_EQ(r, -1);
    }
  }
}

TEST(TypedCopy, CopiesItsBytes) {
  struct Case {
    int32_t type;
    int32_t count;
    std::size_t bytes;
  };
  const Case cases[] = {{2, 3, 6},  {3, 3, 12}, {4, 3, 12},      {5, 3, 24},           {-7, 2, 14}, {1, 5, 5},
                        {0, 9, 0},  {5, 0, 0},  {2, -3, 6},      {3, -2, 8},           {5, -2, 16}, {-7, -2, 14},
                        {6, 2, 12}, {-1, 1, 1}, {4, 1 << 30, 0}, {65537, 65536, 65536}};
  std::vector<unsigned char> from(70000);
  std::iota(from.begin(), from.end(), static_cast<unsigned char>(1));
  for (const Case& c : cases) {
    std::vector<unsigned char> to(70000, 255);
    std::vector<unsigned char> expected = to;
    std::copy_n(from.begin(), c.bytes, expected.begin());
    eaxcpy(&c.type, &c.count, from.data(), to.data());
    EXPECT_EQ(to, expected) << c.type << " " << c.count;
    for (const int shift : {-3, 3}) {
      std::vector<unsigned char> same = from;
      std::vector<unsigned char> moved = from;
      std::copy_n(from.begin() + 3, c.bytes, moved.begin() + 3 + shift);
      eaxcpy(&c.type, &c.count, same.data() + 3, same.data() + 3 + shift);
      EXPECT_EQ(same, moved) << c.type << " " << c.count << " shift " << shift;
    }
  }
}

}  // namespace
}  // namespace zortest
