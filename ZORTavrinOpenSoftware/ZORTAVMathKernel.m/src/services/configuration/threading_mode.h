// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace zortav {

inline constexpr std::int32_t single_threaded_mode = 0;
inline constexpr std::int32_t multi_threaded_mode = 2;

// How the matrix product may run: multi_threaded_mode when more than one thread is in use. It stays
// single_threaded_mode until ehaldb has decided.
std::int32_t threading_mode() noexcept;

}  // namespace zortav
