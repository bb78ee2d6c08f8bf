// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
namespace zortav {
inline std::int32_t threading_mode() noexcept { return 2; }
}
