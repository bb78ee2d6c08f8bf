// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "ZORStatus.h"

namespace zortav {

// The status that stands for an error code of the system: always negative, the cause in the low 16 bits.
constexpr std::int32_t system_status(unsigned long error) noexcept {
  return static_cast<std::int32_t>(ZORSystemFailure | (error & 0xFFFFU));
}

}  // namespace zortav
