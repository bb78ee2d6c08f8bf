// SPDX-License-Identifier: MIT
#include "ZORSystem.h"
#include "ZORTAVListing.h"
#include "ZORTavListingServices.h"

namespace {

constexpr int32_t on = 1;
constexpr int32_t off = 0;

struct DefaultState {
  const char* channel;
  int32_t state;
};

constexpr DefaultState defaults[] = {
    {"TAVPrint", on},   {"TAVError", on},    {"TAVCompute", off},
    {"TAVDefine", off}, {"TAVStorage", off}, {"TAVAcquire", off},
};

}  // namespace

void SetTavTraces() {
  for (const DefaultState& d : defaults) {
    ZORTAVTraceState(d.channel, d.state);
  }
  // Not set makes the empty text, which opens nothing.
  ZORTavListingServices::Set(ZORGetEnv("ADL_ODT_OUT"));
}
