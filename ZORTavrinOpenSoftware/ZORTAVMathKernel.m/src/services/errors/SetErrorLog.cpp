// SPDX-License-Identifier: MIT
// The process's error-log hook, and how it is set and asked for.
#include "ZORTAVErrorReporting.h"
#include "services/errors/error_log.h"

namespace {

ZORTavErrorLog hook_in_use = nullptr;

}  // namespace

ZORTavErrorLog zortav::error_log() noexcept {
  return hook_in_use;
}

void SetErrorLog(ZORTavErrorLog hook) {
  hook_in_use = hook;
}
