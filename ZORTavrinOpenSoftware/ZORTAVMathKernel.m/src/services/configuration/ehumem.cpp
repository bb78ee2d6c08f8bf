// SPDX-License-Identifier: MIT
// words := the machine's memory, or "TAV_REAL_MEMORY" · 2^17 modulo 2^32, clamped to 536000000 .. 2144000000.
#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "ZORSystem.h"
#include "ZORTAVConfiguration.h"

namespace {

constexpr std::int64_t fewest_words = 536000000;
constexpr std::int64_t most_words = 2144000000;
constexpr std::int64_t bytes_per_word = 8;
constexpr int log2_words_per_megabyte = 17;

std::int64_t measure() {
  if (const char* text = ZORGetEnv("TAV_REAL_MEMORY")) {
    // The shift wraps as 32-bit hardware does, and the sign counts: 16384 megabytes are a negative size.
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(std::atoi(text)) << log2_words_per_megabyte);
  }
  return static_cast<std::int64_t>(ZORGetPhysicalMemory()) / bytes_per_word;
}

bool first_call = true;
std::int64_t memory_size = 0;

}  // namespace

void ehumem(int32_t* words) {
  if (first_call) {
    first_call = false;
    memory_size = std::clamp(measure(), fewest_words, most_words);
  }
  *words = static_cast<std::int32_t>(memory_size);
}
