// SPDX-License-Identifier: MIT
#include <map>
#include <string>

#include "ZORRuntime.h"
#include "ZORTrace.h"
#include "trace_state.h"

ZORTraceState& zortav::trace_state(const char* name) noexcept {
  try {
    // Never destroyed: channels are used until the last static object of the process has gone.
    static auto& states = *new std::map<std::string, ZORTraceState>;
    return states[name != nullptr ? name : ""];
  } catch (...) {
    ZORFatalError("no memory for a trace channel", __FILE__, __LINE__);
  }
}

ZORTraControle::ZORTraControle(const char* name) noexcept : state_(&zortav::trace_state(name)) {}

void ZORTraControle::TraPutFlg(int32_t flag) noexcept {
  state_->on = flag != 0;
}

int32_t ZORTraControle::TraGetFlg() const noexcept {
  return state_->on ? 1 : 0;
}

void ZORTraControle::TraPutLevel(int32_t highest) noexcept {
  state_->highest_level = highest;
}

int32_t ZORTraControle::TraGetLevel() const noexcept {
  return state_->highest_level;
}
