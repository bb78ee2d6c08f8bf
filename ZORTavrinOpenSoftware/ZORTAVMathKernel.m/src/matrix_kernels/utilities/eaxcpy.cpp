// SPDX-License-Identifier: MIT
// Copies count elements of an array; the code of their type gives their size. The ranges may overlap.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "ZORTAVMatrixUtilities.h"

namespace {

constexpr std::int32_t type_integer4 = 3;
constexpr std::int32_t type_real8 = 5;

std::size_t bytes_of(std::int32_t type, std::int32_t count) {
  switch (type) {
    case type_integer4:
      return static_cast<std::size_t>(std::llabs(count)) * sizeof(std::int32_t);
    case type_real8:
      return static_cast<std::size_t>(std::llabs(count)) * sizeof(double);
    default: {
      // The product is one of 32 bits and wraps.
      const auto product =
          static_cast<std::int32_t>(static_cast<std::uint32_t>(type) * static_cast<std::uint32_t>(count));
      return static_cast<std::size_t>(std::llabs(product));
    }
  }
}

}  // namespace

void eaxcpy(const int32_t* type, const int32_t* count, const void* src, void* dst) {
  const std::size_t bytes = bytes_of(*type, *count);
  if (bytes > 0) {
    std::memmove(dst, src, bytes);
  }
}
