// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdio>
#include <ctime>

namespace zortav {

inline constexpr std::size_t date_text_size = 80;

// "Year : 2024 Day : 034 Hour : 09 h 05 m 07 s", the day counted from 1 on 1 January. text holds date_text_size
// characters.
inline void write_date_text(const std::tm& now, char* text) {
  char year[32] = "";
  std::strftime(year, sizeof year, "%Y", &now);
  std::snprintf(text, date_text_size, "Year : %s Day : %03d Hour : %02d h %02d m %02d s", year, now.tm_yday + 1,
                now.tm_hour, now.tm_min, now.tm_sec);
}

}  // namespace zortav
