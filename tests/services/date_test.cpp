// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

#include "ZORTavTimer.h"
#include "services/timing/date_text.h"
#include "test_system.h"

namespace {

std::string written(const std::tm& t) {
  std::string text(zortav::date_text_size, '#');
  zortav::write_date_text(t, text.data());
  return text.c_str();
}

TEST(Date, Text) {
  std::tm t{};  // its further fields differ between platforms
  t.tm_mday = 1;
  t.tm_year = 125;
  EXPECT_EQ(written(t), "Year : 2025 Day : 001 Hour : 00 h 00 m 00 s");
  t.tm_sec = 17;
  t.tm_min = 5;
  t.tm_hour = 9;
  t.tm_mday = 3;
  t.tm_mon = 1;
  t.tm_yday = 33;
  EXPECT_EQ(written(t), "Year : 2025 Day : 034 Hour : 09 h 05 m 17 s");
}

TEST(Date, IsLocalTime) {
  for (const char* zone : {"EAST-14", "WEST12", "HALF-05:30"}) {  // the first two are never on the same day
    zortest::set_variable("TZ", zone);
    char* text = nullptr;
    std::time_t before = 0;
    do {  // again when a second has passed while it was made
      std::free(text);
      before = std::time(nullptr);
      TavGetDate(text);
    } while (std::time(nullptr) != before);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text, written(*std::localtime(&before)));
    text[zortav::date_text_size - 1] = '\0';  // the whole buffer is the caller's
    std::free(text);
  }
}

}  // namespace
