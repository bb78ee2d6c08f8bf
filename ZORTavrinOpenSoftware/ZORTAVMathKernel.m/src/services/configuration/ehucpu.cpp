// SPDX-License-Identifier: MIT
// threads := "OMP_NUM_THREADS", read as C reads an integer constant, or 1.
#include <cstdio>

#include "ZORSystem.h"
#include "ZORTAVConfiguration.h"

void ehucpu(int32_t* threads) {
  *threads = 1;
  if (const char* text = ZORGetEnv("OMP_NUM_THREADS")) {
    int value = 0;
    if (std::sscanf(text, "%i", &value) == 1) {
      *threads = value;
    }
  }
}
