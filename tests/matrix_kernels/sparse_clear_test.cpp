// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "ZORTAVSparseKernels.h"

namespace {

using Limits = std::numeric_limits<std::int32_t>;

TEST(Clear, ByTheCodeOfTheType) {
  struct Case {
    std::int32_t type, count;
    std::string start;  // what becomes of the first of 64 marked bytes
  };
  const Case cleared[] = {{2, 5, std::string(10, '\0')}, {3, 5, std::string(20, '\0')}, {4, 5, std::string(20, '\0')},
                          {5, 5, std::string(40, '\0')}, {-8, 3, std::string(24, ' ')}, {-1, 7, std::string(7, ' ')}};
  std::vector<Case> cases(std::begin(cleared), std::end(cleared));
  for (const std::int32_t type : {0, 1, 6, 7, 100, Limits::max()}) {
    cases.push_back({type, 3, ""});
  }
  for (const std::int32_t type : {2, 3, 4, 5, -8, Limits::min()}) {
    cases.push_back({type, 0, ""});
  }
  cases.insert(cases.end(), {{-8, -3, ""}, {2, -3, ""}});
  for (const Case& c : cases) {
    alignas(8) char bytes[64];
    std::fill_n(bytes, 64, '#');
    eaxraz(&c.type, bytes, &c.count);
    EXPECT_EQ(std::string(bytes, 64), c.start + std::string(64 - c.start.size(), '#'))
        << "type " << c.type << ", count " << c.count;
  }
}

TEST(Clear, AFillTakesTheFirstByteAndKeepsToItsCount) {
  for (const std::int32_t count : {-1, 0, 1, 7, 33}) {
    for (const char* text : {"x", "\xff trailing", ""}) {
      std::string bytes(64, '#');
      eaxmac(&bytes[3], &count, text);
      const auto filled = static_cast<std::size_t>(std::max(count, 0));
      EXPECT_EQ(bytes, "###" + std::string(filled, text[0]) + std::string(61 - filled, '#'));
    }
  }
}

}  // namespace
