// SPDX-License-Identifier: MIT
#include "ZORRuntime.h"
#include "ZORTAVConfiguration.h"

void clrfpe() {
  ZORRuntimeSetExceptionMode(0);
}
