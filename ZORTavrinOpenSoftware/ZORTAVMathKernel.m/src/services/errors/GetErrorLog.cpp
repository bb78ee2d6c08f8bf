// SPDX-License-Identifier: MIT
#include "ZORTAVErrorReporting.h"
#include "services/errors/error_log.h"

void GetErrorLog(ZORTavErrorLog* hook) {
  *hook = zortav::error_log();
}
