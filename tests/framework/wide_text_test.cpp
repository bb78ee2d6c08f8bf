// SPDX-License-Identifier: MIT
// Windows only: names beyond the old code pages on their way from and to the system.
#include "wide_text.h"

#include <gtest/gtest.h>

#include <string>

#include "ZORSystem.h"
#include "test_system.h"

namespace {

std::string cut(const char* text, std::size_t capacity) {
  std::string room(capacity + 1, '#');
  zortav::copy_to_fit(text, room.data(), capacity);
  EXPECT_EQ(room.back(), '#');
  return room.c_str();
}

TEST(WideText, IsCutBetweenCharacters) {
  const char* const name = "J\xC3\xB3zsef \xF0\x9F\x98\x80";
  EXPECT_EQ(cut(name, 64), name);
  EXPECT_EQ(cut(name, 13), name) << "its 12 bytes and the zero just fit";
  EXPECT_EQ(cut(name, 12), "J\xC3\xB3zsef ");
  EXPECT_EQ(cut(name, 3), "J");
  EXPECT_EQ(cut(name, 1), "");
}

TEST(WideText, TheEnvironmentIsUtf8AndKnowsEmptyValues) {
  SetEnvironmentVariableW(L"ZORTAV_NAME", L"Ren\u00E9e \u6771\U0001F600");
  const char* const first = ZORGetEnv("ZORTAV_NAME");
  ASSERT_NE(first, nullptr);
  EXPECT_STREQ(first,
               "Ren\xC3\xA9"
               "e \xE6\x9D\xB1\xF0\x9F\x98\x80");
  SetEnvironmentVariableW(L"ZORTAV_NAME", L"");
  ASSERT_NE(ZORGetEnv("ZORTAV_NAME"), nullptr);
  EXPECT_STREQ(ZORGetEnv("ZORTAV_NAME"), "");
  EXPECT_EQ(std::string(first).size(), 14U) << "what was handed out stays";
  SetEnvironmentVariableW(L"ZORTAV_NAME", nullptr);
  EXPECT_EQ(ZORGetEnv("ZORTAV_NAME"), nullptr);
}

}  // namespace
