// SPDX-License-Identifier: MIT
// Matrix indices are signed, container positions are not.
#pragma once

#include <cstddef>
#include <cstdint>

namespace modal {

inline std::size_t at(std::int32_t i) {
  return static_cast<std::size_t>(i);
}
inline std::size_t at(std::int64_t i) {
  return static_cast<std::size_t>(i);
}

}  // namespace modal
