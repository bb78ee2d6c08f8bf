// SPDX-License-Identifier: MIT
// What the memory manager reports, and the status for it.
#pragma once

#include "ZORStatus.h"
#include "ZORTavErrorTools.h"

namespace zortav {

inline constexpr char kernel_catalog[] = "ZORTAVMathKernelError";
inline constexpr int refused_message = 300;
inline constexpr int no_memory_message = 302;
inline constexpr int size_overflow_message = 1025;
// The warning mode in which a refusal tells the sizes (refused_message); any other is the number of the warning itself.
inline constexpr int mode_with_sizes = 1026;

// Of a request that is refused under warning mode.
inline constexpr int status_refused = 8;

inline int fail(const char* text) {
  ZORTavErrorTools::Create(text);
  return E_FAIL;
}

inline int fail_without_memory(int requested_kilobytes, int available_kilobytes) {
  ZORTavErrorTools::CreateError(no_memory_message, kernel_catalog, requested_kilobytes, available_kilobytes);
  return E_FAIL;
}

inline int refuse(int mode) {
  ZORTavErrorTools::CreateWarning(mode, kernel_catalog);
  return status_refused;
}

inline int refuse(int mode, int requested_kilobytes, int available_kilobytes) {
  if (mode != mode_with_sizes) {
    return refuse(mode);
  }
  ZORTavErrorTools::CreateWarning(refused_message, kernel_catalog, requested_kilobytes, available_kilobytes);
  return status_refused;
}

}  // namespace zortav
