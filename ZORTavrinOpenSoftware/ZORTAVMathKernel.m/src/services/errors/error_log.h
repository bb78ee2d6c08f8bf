// SPDX-License-Identifier: MIT
#pragma once

#include "ZORTAVErrorReporting.h"

namespace zortav {

// The hook that is told of every error, null when there is none.
ZORTavErrorLog error_log() noexcept;

}  // namespace zortav
