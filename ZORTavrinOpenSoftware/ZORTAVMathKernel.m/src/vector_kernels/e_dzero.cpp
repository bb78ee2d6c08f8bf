// SPDX-License-Identifier: MIT
// x(i) := 0 for i = 1..n. A negative increment starts at position 1 + (1-n)·incx and walks backwards.
#include <cstdint>
#include <cstring>

#include "ZORTAVVectorKernels.h"

void e_dzero(const int32_t* n, double* x, const int32_t* incx) {
  const std::int64_t count = *n;
  const std::int64_t step = *incx;
  if (count == 0) {
    return;
  }
  if (step == 1) {
    // A negative count is the caller's fault here: it is not guarded.
    std::memset(x, 0, static_cast<std::size_t>(count) * sizeof *x);
    return;
  }
  std::int64_t at = step < 0 ? (1 - count) * step : 0;
  for (std::int64_t i = 0; i < count; ++i, at += step) {
    x[at] = 0;
  }
}
