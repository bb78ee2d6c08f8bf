// SPDX-License-Identifier: MIT
#include "ZORRuntime.h"

#include <fenv.h>
#include <stdio_ext.h>

#include <cstdio>
#include <cstdlib>

void ZORRuntimeStop(const char* text) {
  // In one piece: several threads may stop at once.
  std::fprintf(stderr, "%s\n", text);
  // A thread that waits for input holds the lock of its stream for as long as it waits; the flush must not wait for it.
  __fsetlocking(stdin, FSETLOCKING_BYCALLER);
  std::fflush(nullptr);
  // exit would run destructors under the feet of a caller's other threads; a stop leaves nothing to tidy.
  std::_Exit(EXIT_FAILURE);
}

void ZORRuntimeWriteRecord(const char* text, int number) {
  std::printf(" %s %11d\n", text, number);
  std::fflush(stdout);
}

void ZORRuntimeSetExceptionMode(int mode) {
  if (mode == 0) {
    fedisableexcept(FE_ALL_EXCEPT);
  }
}

void ZORRuntimeFollowThreadCount(int32_t /*threads*/) {}
