// SPDX-License-Identifier: MIT
#include "ZORTrace.h"

#include <cstdarg>
#include <cstdio>

#include "trace_state.h"

namespace {

const char* or_empty(const char* text) {
  return text != nullptr ? text : "";
}

}  // namespace

ZORTrace::ZORTrace(const char* name, const char* title, int32_t mode, const char* output, int32_t buffer_size) noexcept
    : name_(name),
      title_(title),
      output_(output),
      to_standard_error_(output_ == "STDERR"),
      mode_(mode),
      buffer_size_(buffer_size),
      level_(0),
      state_(&zortav::trace_state(name_.GetText())) {}

ZORTrace::~ZORTrace() = default;

const char* ZORTrace::GetName() const noexcept {
  return name_.GetText();
}

const char* ZORTrace::GetTitle() const noexcept {
  return title_.GetText();
}

int32_t ZORTrace::GetMode() const noexcept {
  return mode_;
}

const char* ZORTrace::GetOutput() const noexcept {
  return output_.GetText();
}

int32_t ZORTrace::GetBufferSize() const noexcept {
  return buffer_size_;
}

int32_t ZORTrace::GetLevel() const noexcept {
  return level_;
}

void ZORTrace::SetLevel(int32_t level) noexcept {
  level_ = level;
}

void ZORTrace::TraPut(const char* text) noexcept {
  if (Writes(level_)) {
    Write(or_empty(text), "");
  }
}

void ZORTrace::TraPutLN(const char* text) noexcept {
  if (Writes(level_)) {
    Write(or_empty(text), "\n");
  }
}

void ZORTrace::TraPutLN(const char* text, int32_t value) noexcept {
  if (Writes(level_)) {
    char value_and_line_end[16];
    std::snprintf(value_and_line_end, sizeof value_and_line_end, "%d\n", static_cast<int>(value));
    Write(or_empty(text), value_and_line_end);
  }
}

void ZORTrace::TraPrint(int32_t level, const char* format, ...) noexcept {
  if (!Writes(level)) {
    return;
  }
  std::FILE* const stream = Stream();
  std::va_list values;
  va_start(values, format);
  std::vfprintf(stream, or_empty(format), values);
  va_end(values);
  std::fflush(stream);
}

bool ZORTrace::Writes(int32_t level) const noexcept {
  return state_->on && level <= state_->highest_level;
}

std::FILE* ZORTrace::Stream() const noexcept {
  return to_standard_error_ ? stderr : stdout;
}

void ZORTrace::Write(const char* text, const char* end) const noexcept {
  std::FILE* const stream = Stream();
  std::fputs(text, stream);
  std::fputs(end, stream);
  std::fflush(stream);
}
