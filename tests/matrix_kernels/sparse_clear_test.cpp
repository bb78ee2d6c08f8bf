// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "ZORTAVSparseKernels.h"
#include "support/numbers.h"

namespace {

using Bytes = zortest::Guarded<char>;

// What a call leaves of 64 marked bytes: '#' for a byte not touched, '0' for a zero, 'b' for a blank.
std::string after_clearing(std::int32_t type, std::int32_t count) {
  alignas(8) char bytes[64];
  std::fill_n(bytes, 64, '#');
  eaxraz(&type, bytes, &count);
  std::string seen;
  for (const char byte : bytes) {
    seen += byte == '\0' ? '0' : byte == ' ' ? 'b' : byte;
  }
  return seen;
}

std::string first_bytes(std::size_t count, char seen) {
  return std::string(count, seen) + std::string(64 - count, '#');
}

TEST(Clear, ByTheCodeOfTheType) {
  EXPECT_EQ(after_clearing(2, 5), first_bytes(10, '0'));
  EXPECT_EQ(after_clearing(3, 5), first_bytes(20, '0'));
  EXPECT_EQ(after_clearing(4, 5), first_bytes(20, '0'));
  EXPECT_EQ(after_clearing(5, 5), first_bytes(40, '0'));
  EXPECT_EQ(after_clearing(-8, 3), first_bytes(24, 'b'));
  EXPECT_EQ(after_clearing(-1, 7), first_bytes(7, 'b'));
}

TEST(Clear, NothingForOtherCodesAndEmptyArrays) {
  for (const std::int32_t type : {0, 1, 6, 7, 100, std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_EQ(after_clearing(type, 3), first_bytes(0, '#')) << "type " << type;
  }
  for (const std::int32_t type : {2, 3, 4, 5, -8, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(after_clearing(type, 0), first_bytes(0, '#')) << "type " << type;
  }
  EXPECT_EQ(after_clearing(-8, -3), first_bytes(0, '#'));
  EXPECT_EQ(after_clearing(2, -3), first_bytes(0, '#'));
}

TEST(Clear, AFillTakesTheFirstByteAndKeepsToItsCount) {
  for (const std::int32_t count : {-1, 0, 1, 7, 33}) {
    for (const char* text : {"x", "\xff trailing", ""}) {
      Bytes bytes(static_cast<std::size_t>(40), 3);
      eaxmac(bytes.data(), &count, text);
      for (int at = 0; at < 40; ++at) {
        const char untouched = static_cast<char>(-123456789);
        ASSERT_EQ(bytes[static_cast<std::size_t>(at)], at < count ? text[0] : untouched) << "byte " << at;
      }
      ASSERT_TRUE(bytes.intact());
    }
  }
}

}  // namespace
