// SPDX-License-Identifier: MIT
#include "wide_text.h"

#include <algorithm>
#include <cstring>

std::wstring zortav::wide(const ZORUnicodeString& text) {
  std::wstring units(text.ToWide(nullptr, 0) + 1, L'\0');
  text.ToWide(units.data(), units.size());
  units.pop_back();
  return units;
}

void zortav::copy_to_fit(const ZORUnicodeString& text, char* room, std::size_t capacity) noexcept {
  const char* const bytes = text.GetText();
  std::size_t length = std::min(text.GetLength(), capacity - 1);
  const auto continues = [bytes](std::size_t at) { return (static_cast<unsigned char>(bytes[at]) & 0xC0U) == 0x80U; };
  while (length > 0 && continues(length)) {
    --length;
  }
  std::memcpy(room, bytes, length);
  room[length] = '\0';
}
