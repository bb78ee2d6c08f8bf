// SPDX-License-Identifier: MIT
#include "ZORRuntime.h"

#include <cstdio>

void ZORFatalError(const char* text, const char* file, int32_t line) noexcept {
  std::fprintf(stderr, "%s\n", text);
  char place[512];
  std::snprintf(place, sizeof place, "(%s, line %d)", file, static_cast<int>(line));
  ZORRuntimeStop(place);
}
