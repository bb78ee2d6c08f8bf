// SPDX-License-Identifier: MIT
// Message identifiers: "ERR", "WARN" or "INFO", an underscore and the number with at least four digits, as "%4.4d"
// writes it.
#pragma once

#include <cstddef>
#include <cstdio>

namespace zortav {

inline constexpr std::size_t message_id_size = sizeof "WARN_-2147483648";
using MessageId = char[message_id_size];

inline void write_message_id(MessageId& message_id, const char* kind, int id) {
  std::snprintf(message_id, message_id_size, "%s_%4.4d", kind, id);
}

inline constexpr char internal_error_id[] = "ERR_0001";

}  // namespace zortav
