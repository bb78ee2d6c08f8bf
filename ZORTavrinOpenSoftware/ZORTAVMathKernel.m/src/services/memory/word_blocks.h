// SPDX-License-Identifier: MIT
// Blocks counted in 8-byte words: what the memory manager asks the framework for.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "ZORMemory.h"

namespace zortav {

inline constexpr long long word_bytes = 8;
inline constexpr int words_per_kilobyte = 128;
// Nobody's heap is larger; the sizes of such blocks are computed without overflow.
inline constexpr long long most_words = std::numeric_limits<std::ptrdiff_t>::max() / word_bytes - 1;

inline bool is_aligned(const char* block) {
  return reinterpret_cast<std::uintptr_t>(block) % word_bytes == 0;
}

// The first multiple of 8 from the block's address on.
inline char* aligned(char* block) {
  const std::uintptr_t past = reinterpret_cast<std::uintptr_t>(block) % word_bytes;
  return past == 0 ? block : block + (word_bytes - past);
}

// A block for so many words, with one more to align the first; null when it is not to be had.
inline char* new_block(long long words) {
  if (words > most_words) {
    return nullptr;
  }
  return static_cast<char*>(ZORUnsecuredMemAlloc(static_cast<std::size_t>(words * word_bytes + word_bytes)));
}

// How many words can be had, in steps of 5% below what was wanted; 0 when less than a step can.
inline long long available_words(int wanted) {
  constexpr long long steps = 20;
  long long bytes = wanted * word_bytes;
  const long long step = std::max(bytes / steps, 1LL);
  for (bytes -= step; bytes > step; bytes -= step) {
    if (void* block = ZORUnsecuredMemAlloc(static_cast<std::size_t>(bytes))) {
      std::free(block);
      return bytes / word_bytes;
    }
  }
  return 0;
}

}  // namespace zortav
