// SPDX-License-Identifier: MIT
// UTF-8 <-> the platform's wide characters, by the tables of RFC 3629 and RFC 2781.
#include "ZORUnicodeString.h"

#include <cstdint>

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t last_character = 0x10FFFF;
constexpr char32_t first_surrogate = 0xD800;
constexpr char32_t first_low_surrogate = 0xDC00;
constexpr char32_t after_surrogates = 0xE000;
constexpr char32_t first_of_pair = 0x10000;
constexpr bool wide_is_utf16 = sizeof(wchar_t) == 2;

bool is_surrogate(char32_t c) {
  return c >= first_surrogate && c < after_surrogates;
}

// Takes one character off the text. A byte that begins no valid sequence is taken alone, as the replacement.
char32_t take_utf8(const char*& at) {
  const auto byte = [&at](int i) { return static_cast<char32_t>(static_cast<unsigned char>(at[i])); };
  const char32_t lead = byte(0);
  const int following = lead < 0x80 ? 0 : lead < 0xC2 ? -1 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : lead < 0xF5 ? 3 : -1;
  char32_t c = following <= 0 ? lead : lead & (0x3FU >> following);
  bool valid = following >= 0;
  // A terminating zero is no continuation byte: the text is not left.
  for (int i = 1; valid && i <= following; ++i) {
    valid = (byte(i) & 0xC0U) == 0x80U;
    c = c << 6 | (byte(i) & 0x3FU);
  }
  constexpr char32_t least[] = {0, 0x80, 0x800, first_of_pair};
  if (!valid || c < least[following] || c > last_character || is_surrogate(c)) {
    ++at;
    return replacement;
  }
  at += following + 1;
  return c;
}

void append_utf8(char32_t c, ZORString& text) {
  char bytes[5] = {};
  const auto tail = [c](int shift) { return static_cast<char>(0x80U | (c >> shift & 0x3FU)); };
  if (c < 0x80) {
    bytes[0] = static_cast<char>(c);
  } else if (c < 0x800) {
    bytes[0] = static_cast<char>(0xC0U | c >> 6);
    bytes[1] = tail(0);
  } else if (c < first_of_pair) {
    bytes[0] = static_cast<char>(0xE0U | c >> 12);
    bytes[1] = tail(6);
    bytes[2] = tail(0);
  } else {
    bytes[0] = static_cast<char>(0xF0U | c >> 18);
    bytes[1] = tail(12);
    bytes[2] = tail(6);
    bytes[3] = tail(0);
  }
  text.Append(bytes);
}

}  // namespace

ZORUnicodeString::ZORUnicodeString(const char* utf8) noexcept : utf8_(utf8) {}

ZORUnicodeString::ZORUnicodeString(const ZORString& utf8) noexcept : utf8_(utf8) {}

const char* ZORUnicodeString::GetText() const noexcept {
  return utf8_.GetText();
}

size_t ZORUnicodeString::GetLength() const noexcept {
  return utf8_.GetLength();
}

bool ZORUnicodeString::IsEmpty() const noexcept {
  return utf8_.IsEmpty();
}

void ZORUnicodeString::Append(const ZORUnicodeString& text) noexcept {
  utf8_.Append(text.utf8_);
}

ZORUnicodeString ZORUnicodeString::FromWide(const wchar_t* wide) noexcept {
  ZORUnicodeString text;
  while (wide != nullptr && *wide != L'\0') {
    auto c = static_cast<char32_t>(*wide++);
    if constexpr (wide_is_utf16) {
      const auto next = static_cast<char32_t>(*wide);
      if (c >= first_surrogate && c < first_low_surrogate && next >= first_low_surrogate && next < after_surrogates) {
        c = first_of_pair + ((c - first_surrogate) << 10) + (next - first_low_surrogate);
        ++wide;
      }
    }
    append_utf8(is_surrogate(c) || c > last_character ? replacement : c, text.utf8_);
  }
  return text;
}

size_t ZORUnicodeString::ToWide(wchar_t* wide, size_t capacity) const noexcept {
  size_t length = 0;
  const auto put = [&](char32_t unit) {
    if (length + 1 < capacity) {
      wide[length] = static_cast<wchar_t>(unit);
    }
    ++length;
  };
  for (const char* at = GetText(); *at != '\0';) {
    const char32_t c = take_utf8(at);
    if (wide_is_utf16 && c >= first_of_pair) {
      put(first_surrogate + ((c - first_of_pair) >> 10));
      put(first_low_surrogate + ((c - first_of_pair) & 0x3FFU));
    } else {
      put(c);
    }
  }
  if (capacity > 0) {
    wide[length < capacity ? length : capacity - 1] = L'\0';
  }
  return length;
}

bool operator==(const ZORUnicodeString& a, const ZORUnicodeString& b) noexcept {
  return a.utf8_ == b.utf8_;
}

bool operator!=(const ZORUnicodeString& a, const ZORUnicodeString& b) noexcept {
  return !(a == b);
}

ZORUnicodeString operator+(const ZORUnicodeString& a, const ZORUnicodeString& b) noexcept {
  ZORUnicodeString sum(a);
  sum.Append(b);
  return sum;
}
