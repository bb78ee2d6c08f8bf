// SPDX-License-Identifier: MIT
#include "ZORTAVListing.h"
#include "ZORTrace.h"

void ZORTAVTraceState(const char* channel, int32_t state) {
  ZORTraControle(channel).TraPutFlg(state);
}
