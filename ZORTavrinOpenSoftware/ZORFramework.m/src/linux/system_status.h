// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace zortav {

// The status that stands for an errno value other than 0: always negative, the cause in the low 16 bits.
std::int32_t system_status(int error) noexcept;

}  // namespace zortav
