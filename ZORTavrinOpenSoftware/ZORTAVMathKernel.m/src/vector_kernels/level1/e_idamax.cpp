// SPDX-License-Identifier: MIT
// The first i (from 1) with |x(i)| = max |x(j)|, j = 1..n. NaNs are passed over; 1 when there is nothing else.
//
// Blocks that stay in the first-level cache are first asked for their maximum only, which needs no chain of dependent
// comparisons. Only the block in which the maximum last rose is searched for the place.
#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/magnitude.h"
#include "vector_kernels/level1/vector_kernel_table.h"

namespace {

std::int64_t strided_idamax(std::int64_t n, const double* x, std::int64_t step) {
  constexpr std::int64_t block = 256;
  double found = zortav::no_magnitude;
  std::int64_t found_in = 0;
  for (std::int64_t from = 0; from < n; from += block) {
    const double size = zortav::strided_max_magnitude(std::min(block, n - from), x + from * step, step);
    if (size > found) {
      found = size;
      found_in = from;
    }
  }
  if (found == zortav::no_magnitude) {
    return 0;
  }
  std::int64_t i = found_in;
  while (zortav::magnitude(x, i * step) != found) {
    ++i;
  }
  return i;
}

}  // namespace

int32_t e_idamax(const int32_t* n, const double* x, const int32_t* incx) {
  const std::int64_t count = *n;
  if (count <= 0) {
    return 0;
  }
  if (count == 1 || *incx == 0) {
    return 1;
  }
  const std::int64_t at =
      *incx == 1 ? static_cast<std::int64_t>(zortav::vector_kernels().idamax(static_cast<std::size_t>(count), x))
                 : strided_idamax(count, x, std::llabs(*incx));
  return static_cast<int32_t>(at + 1);
}
