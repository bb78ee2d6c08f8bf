// SPDX-License-Identifier: MIT
// Windows takes and gives UTF-16; the library's texts are UTF-8.
#pragma once

#include <string>

#include "ZORUnicodeString.h"

namespace zortav {

std::wstring wide(const ZORUnicodeString& text);

// Copies a text into room of `capacity` bytes, zero-terminated; what does not fit is left out by whole characters.
void copy_to_fit(const ZORUnicodeString& text, char* room, std::size_t capacity) noexcept;

}  // namespace zortav
