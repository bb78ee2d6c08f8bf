// SPDX-License-Identifier: MIT
// max |x(i)|, i = 1..n. NaNs are passed over; what is largest does not depend on the order of the search.
#include <cstdint>
#include <cstdlib>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/magnitude.h"
#include "vector_kernels/level1/vector_kernel_table.h"

double damax(const int32_t* n, const double* x, const int32_t* incx) {
  const std::int64_t count = *n;
  if (count <= 0) {
    return 0;
  }
  const double first = zortav::magnitude(x, 0);
  if (count == 1 || *incx == 0) {
    return first;
  }
  const double found = *incx == 1 ? zortav::vector_kernels().max_magnitude(static_cast<std::size_t>(count), x)
                                  : zortav::strided_max_magnitude(count, x, std::llabs(*incx));
  return found == zortav::no_magnitude ? first : found;
}
