// SPDX-License-Identifier: MIT
#include "ZORTAVConfiguration.h"

void GetMaxSlaveMemory(int32_t* words) {
  *words = 1073000000;
}
