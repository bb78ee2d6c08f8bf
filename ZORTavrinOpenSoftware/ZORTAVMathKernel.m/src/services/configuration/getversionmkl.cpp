// SPDX-License-Identifier: MIT
#include "ZORTAVConfiguration.h"

void getversionmkl(char* text, [[maybe_unused]] int64_t text_length) {
  *text = '\0';
}
