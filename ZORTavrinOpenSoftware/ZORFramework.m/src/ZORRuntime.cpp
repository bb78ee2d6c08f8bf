// SPDX-License-Identifier: MIT
#include "ZORRuntime.h"

#include <cstdio>

void ZORFatalError(const char* text, const char* file, int32_t line) noexcept {
  char lines[512];
  std::snprintf(lines, sizeof lines, "%s\n(%s, %d)", text, file, static_cast<int>(line));
  ZORRuntimeStop(lines);
}
