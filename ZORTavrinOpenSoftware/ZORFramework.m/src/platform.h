// SPDX-License-Identifier: MIT
// What the portable part of the framework asks of src/<platform>, besides the public functions that live there.
#pragma once

#include <cstdint>

#include "ZORUnicodeString.h"

namespace zortav {

// What stands between the folders of a list.
extern const char path_list_separator;

// The folder of the library's file; empty when it cannot be told.
ZORUnicodeString library_folder() noexcept;

// A fresh universally unique identifier, its bytes in the order of the text form.
void generate_uuid(std::uint8_t (&bytes)[16]) noexcept;

}  // namespace zortav
