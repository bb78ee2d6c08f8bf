// SPDX-License-Identifier: MIT
// Arrays that change their length: in place or moved by the framework, or by a copy into a group of its own.
#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstring>

#include "ZORMemory.h"
#include "ZORStatus.h"
#include "ZORTavMemoryManager.h"
#include "services/memory/word_blocks.h"

// An array does not start where its block does when the block is not aligned. The contents are laid to the block's
// start, resized with it, and laid to the first aligned address again.
int ZORTavMemoryManager::Reallocation(int group, char*& array, long long length) {
  if (group < 1 || group > GroupCount) {
    return E_FAIL;
  }
  char*& block = BlockTable[GroupEndTable[group]];
  long long& words = LengthTable[GroupEndTable[group]];
  if (!zortav::is_aligned(block)) {
    std::memmove(block, array != nullptr ? array : zortav::aligned(block),
                 static_cast<std::size_t>(words * zortav::word_bytes));
    array = block;
  }
  if (array == nullptr) {
    array = block;
  }
  block = static_cast<char*>(ZORUnsecuredMemRealloc(array, static_cast<std::size_t>(length) + zortav::word_bytes));
  array = zortav::aligned(block);
  if (array != block) {
    std::memmove(array, block, static_cast<std::size_t>(length));
  }
  MemoryUsed -= words;
  words = length / zortav::word_bytes;
  MemoryUsed += words;
  PeakMemoryUsed = std::max(PeakMemoryUsed, MemoryUsed);
  return 0;
}

int ZORTavMemoryManager::ManualReallocation(int& group, char*& array, long long old_length, long long new_length) {
  int new_group = 0;
  char* new_array = nullptr;
  char** const new_arrays = &new_array;
  long long words = new_length;
  if (const int status = Allocation(1, new_group, new_arrays, &words); status != 0) {
    return status;
  }
  const long long kept = std::min(old_length, words * zortav::word_bytes);
  if (array != nullptr && kept > 0) {
    std::memcpy(new_array, array, static_cast<std::size_t>(kept));
  }
  if (group > 0) {
    ReleaseAlone(group);
  } else if (group > INT_MIN) {  // whose opposite, a group beyond every other, no int can name
    if (const int status = Desallocation(-group); status != 0) {
      return status;
    }
  }
  group = new_group;
  array = new_array;
  return 0;
}
