// SPDX-License-Identifier: MIT
// An internal error of a numerical routine: "Parameter: <parameter>", a line end, the first 80 characters of its text.
#include <cstdio>

#include "ZORTAVErrorReporting.h"
#include "ZORTavErrorTools.h"

int32_t ehrprog(const int32_t* parameter, const char* text, int32_t* flag, int64_t) {
  constexpr int text_characters = 80;
  char message[sizeof "Parameter: -2147483648\n" + text_characters];
  std::snprintf(message, sizeof message, "Parameter: %d\n%.*s", *parameter, text_characters, text);
  *flag = 1;
  ZORTavErrorTools::Create(message);
  return 1;
}
