// SPDX-License-Identifier: MIT
#include "ZORString.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include "ZORRuntime.h"

ZORString::ZORString(const char* text) noexcept {
  length_ = text != nullptr ? std::strlen(text) : 0;
  if (length_ == 0) {
    return;
  }
  text_ = static_cast<char*>(std::malloc(length_ + 1));
  if (text_ == nullptr) {
    ZORFatalError("no memory for a text", __FILE__, __LINE__);
  }
  std::memcpy(text_, text, length_ + 1);
}

ZORString::ZORString(const ZORString& other) noexcept : ZORString(other.text_) {}

ZORString::ZORString(ZORString&& other) noexcept
    : text_(std::exchange(other.text_, nullptr)), length_(std::exchange(other.length_, 0)) {}

ZORString& ZORString::operator=(const ZORString& other) noexcept {
  if (this != &other) {
    *this = ZORString(other);
  }
  return *this;
}

ZORString& ZORString::operator=(ZORString&& other) noexcept {
  std::swap(text_, other.text_);
  std::swap(length_, other.length_);
  return *this;
}

ZORString::~ZORString() {
  std::free(text_);
}

const char* ZORString::GetText() const noexcept {
  return text_ != nullptr ? text_ : "";
}

size_t ZORString::GetLength() const noexcept {
  return length_;
}

bool ZORString::IsEmpty() const noexcept {
  return length_ == 0;
}

void ZORString::Append(const ZORString& text) noexcept {
  const size_t added = text.length_;  // text may be the object itself
  if (added == 0) {
    return;
  }
  auto* const longer = static_cast<char*>(std::realloc(text_, length_ + added + 1));
  if (longer == nullptr) {
    ZORFatalError("no memory for a text", __FILE__, __LINE__);
  }
  text_ = longer;
  std::memcpy(text_ + length_, text.text_, added);
  length_ += added;
  text_[length_] = '\0';
}

bool operator==(const ZORString& a, const ZORString& b) noexcept {
  return a.length_ == b.length_ && std::strcmp(a.GetText(), b.GetText()) == 0;
}

bool operator!=(const ZORString& a, const ZORString& b) noexcept {
  return !(a == b);
}

ZORString operator+(const ZORString& a, const ZORString& b) noexcept {
  ZORString sum(a);
  sum.Append(b);
  return sum;
}
