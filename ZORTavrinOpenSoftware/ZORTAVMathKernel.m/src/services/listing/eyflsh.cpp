// SPDX-License-Identifier: MIT
#include <cstdio>

#include "ZORTAVListing.h"

int32_t eyflsh() {
  return std::fflush(stdout);
}
