// SPDX-License-Identifier: MIT
// Clears count elements of an array: numbers to 0, characters to blanks, by the code of their type.
#include <algorithm>
#include <cstdint>
#include <limits>

#include "ZORTAVSparseKernels.h"
#include "ZORTAVVectorKernels.h"

namespace {

constexpr std::int32_t type_integer2 = 2;
constexpr std::int32_t type_integer4 = 3;
constexpr std::int32_t type_logical4 = 4;
constexpr std::int32_t type_real8 = 5;

// eaxmac counts in 32 bits, the bytes of an array of long elements may be more.
void fill_bytes(void* array, std::int64_t bytes, char character) {
  auto* at = static_cast<char*>(array);
  while (bytes > 0) {
    const auto piece =
        static_cast<std::int32_t>(std::min<std::int64_t>(bytes, std::numeric_limits<std::int32_t>::max()));
    eaxmac(at, &piece, &character, 1);
    at += piece;
    bytes -= piece;
  }
}

}  // namespace

void eaxraz(const int32_t* type, void* array, const int32_t* count) {
  const std::int32_t unit = 1;
  if (*type < 0) {
    fill_bytes(array, -std::int64_t{*type} * *count, ' ');
    return;
  }
  switch (*type) {
    case type_integer4:
    case type_logical4:
      e_izero(count, static_cast<std::int32_t*>(array), &unit);
      break;
    case type_real8:
      e_dzero(count, static_cast<double*>(array), &unit);
      break;
    case type_integer2:
      fill_bytes(array, std::int64_t{2} * *count, '\0');
      break;
    default:
      break;
  }
}
