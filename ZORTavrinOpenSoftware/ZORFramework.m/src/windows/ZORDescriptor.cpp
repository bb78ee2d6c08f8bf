// SPDX-License-Identifier: MIT
#include "ZORDescriptor.h"

#include <windows.h>
// After it.
#include <io.h>
#include <stdio.h>

namespace {

constexpr int last_standard_descriptor = 2;

void keep_from_children(int descriptor) noexcept {
  SetHandleInformation(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)), HANDLE_FLAG_INHERIT, 0);
}

}  // namespace

int32_t ZORGetOutputDescriptor() noexcept {
  // A program without a console has a stream without a descriptor: -2 in the C runtime.
  const int descriptor = _fileno(stdout);
  return descriptor >= 0 ? descriptor : -1;
}

int32_t ZORDuplicateDescriptor(int32_t descriptor) noexcept {
  if (descriptor < 0) {
    return -1;
  }
  // The runtime gives the lowest number that is free; the low ones are handed back when a high one has been reached.
  int taken[last_standard_descriptor + 1];
  int count = 0;
  int duplicate = _dup(descriptor);
  while (duplicate >= 0 && duplicate <= last_standard_descriptor) {
    taken[count++] = duplicate;
    duplicate = _dup(descriptor);
  }
  while (count > 0) {
    _close(taken[--count]);
  }
  if (duplicate >= 0) {
    keep_from_children(duplicate);
  }
  return duplicate;
}

int32_t ZORReplaceDescriptor(int32_t source, int32_t target) noexcept {
  return source >= 0 && target >= 0 ? _dup2(source, target) : -1;
}

void ZORReleaseDescriptor(int32_t descriptor) noexcept {
  if (descriptor >= 0) {
    _close(descriptor);
  }
}
