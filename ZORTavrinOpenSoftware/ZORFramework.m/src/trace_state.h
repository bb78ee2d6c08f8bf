// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <limits>

// What a channel's name stands for, shared by the channels and the controllers of that name.
struct ZORTraceState {
  bool on = true;
  std::int32_t highest_level = std::numeric_limits<std::int32_t>::max();
};

namespace zortav {

// The state of a name. It lives as long as the process.
ZORTraceState& trace_state(const char* name) noexcept;

}  // namespace zortav
