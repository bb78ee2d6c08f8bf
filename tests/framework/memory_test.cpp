// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "ZORMemory.h"

namespace {

bool refuse_and_note(void* context, size_t bytes) {
  *static_cast<size_t*>(context) = bytes;
  return bytes > 100;
}

TEST(Memory, BlocksGrowKeepTheirContentsAndAreReleasedByFree) {
  auto* block = static_cast<char*>(ZORUnsecuredMemRealloc(nullptr, 4));
  std::memcpy(block, "abc", 4);
  block = static_cast<char*>(ZORUnsecuredMemRealloc(block, 100000));
  ASSERT_NE(block, nullptr);
  EXPECT_STREQ(block, "abc");
  EXPECT_EQ(ZORUnsecuredMemAlloc(SIZE_MAX / 2), nullptr);
  EXPECT_EQ(ZORUnsecuredMemRealloc(block, SIZE_MAX / 2), nullptr);
  block = static_cast<char*>(ZORUnsecuredMemRealloc(block, 0));
  EXPECT_NE(block, nullptr);
  std::free(block);
  void* const none = ZORUnsecuredMemAlloc(0);
  EXPECT_NE(none, nullptr);
  std::free(none);
}

TEST(Memory, ATestCanRefuseRequests) {
  size_t asked = 0;
  ZORSetMemRefusal(refuse_and_note, &asked);
  EXPECT_EQ(ZORUnsecuredMemAlloc(101), nullptr);
  EXPECT_EQ(asked, 101U);
  auto* block = static_cast<char*>(ZORUnsecuredMemAlloc(4));
  ASSERT_NE(block, nullptr);
  std::memcpy(block, "abc", 4);
  EXPECT_EQ(ZORUnsecuredMemRealloc(block, 102), nullptr);
  EXPECT_EQ(asked, 102U);
  EXPECT_STREQ(block, "abc");
  ZORSetMemRefusal(nullptr, nullptr);
  block = static_cast<char*>(ZORUnsecuredMemRealloc(block, 102));
  EXPECT_NE(block, nullptr);
  std::free(block);
}

}  // namespace
