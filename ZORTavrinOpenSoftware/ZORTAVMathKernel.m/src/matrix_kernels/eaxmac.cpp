// SPDX-License-Identifier: MIT
// Sets count bytes to one character.
#include <cstdint>
#include <cstring>

#include "ZORTAVSparseKernels.h"

void eaxmac(void* array, const int32_t* count, const char* character, int64_t /*character_length*/) {
  if (*count > 0) {
    std::memset(array, static_cast<unsigned char>(*character), static_cast<std::size_t>(*count));
  }
}
