// SPDX-License-Identifier: MIT
#include "ZORRuntime.h"

#include <fenv.h>

#include <cstdio>
#include <cstdlib>

void ZORRuntimeStop(const char* text) {
  std::fputs(text, stderr);
  std::fputc('\n', stderr);
  std::fflush(nullptr);
  // exit would run destructors under the feet of a caller's other threads; a stop leaves nothing to tidy.
  std::_Exit(EXIT_FAILURE);
}

void ZORRuntimeSetExceptionMode(int mode) {
  if (mode == 0) {
    fedisableexcept(FE_ALL_EXCEPT);
  }
}
