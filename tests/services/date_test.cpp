// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

#include "ZORTavTimer.h"
#include "services/date_text.h"

namespace {

std::string written(int year, int day_from_0, int hour, int minute, int second) {
  std::tm t{};
  t.tm_year = year - 1900;
  t.tm_yday = day_from_0;
  t.tm_hour = hour;
  t.tm_min = minute;
  t.tm_sec = second;
  std::string text(zortav::date_text_size, '#');
  zortav::write_date_text(t, text.data());
  return text.c_str();
}

TEST(Date, Text) {
  EXPECT_EQ(written(2023, 33, 9, 5, 7), "Year : 2023 Day : 034 Hour : 09 h 05 m 07 s");
  EXPECT_EQ(written(2025, 0, 0, 0, 0), "Year : 2025 Day : 001 Hour : 00 h 00 m 00 s");
  EXPECT_EQ(written(2024, 365, 23, 59, 60), "Year : 2024 Day : 366 Hour : 23 h 59 m 60 s");
}

// The text for now in this zone, unless a second has passed while it was made.
void check_zone(const char* zone) {
  setenv("TZ", zone, 1);
  for (;;) {
    const std::time_t before = std::time(nullptr);
    char* text = nullptr;
    TavGetDate(text);
    if (std::time(nullptr) != before) {
      std::free(text);
      continue;
    }
    const std::tm local = *std::localtime(&before);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text, written(local.tm_year + 1900, local.tm_yday, local.tm_hour, local.tm_min, local.tm_sec));
    text[zortav::date_text_size - 1] = '\0';  // the whole buffer is the caller's
    std::free(text);
    return;
  }
}

TEST(Date, IsLocalTime) {
  check_zone("EAST-14");
  check_zone("WEST12");  // 26 hours apart: another day
  check_zone("HALF-05:30");
}

}  // namespace
