// SPDX-License-Identifier: MIT
// Groups given back: group g holds the blocks GroupEndTable[g − 1] + 1 to GroupEndTable[g].
#include <cstdlib>

#include "ZORStatus.h"
#include "ZORTavMemoryManager.h"

int ZORTavMemoryManager::Desallocation(int group) {
  if (group == 0) {
    return E_FAIL;
  }
  if (group < 0) {
    ReleaseAlone(-static_cast<long long>(group));
  } else if (group <= GroupCount) {
    ReleaseBlocks(GroupEndTable[group - 1] + 1, GroupEndTable[GroupCount]);
    GroupCount = group - 1;
  }
  return 0;
}

int ZORTavMemoryManager::Desallocation(int count, const int* groups) {
  for (int i = 0; i < count; ++i) {
    ReleaseAlone(groups[i]);
  }
  return 0;
}

int ZORTavMemoryManager::Desallocation(int count, char** const& arrays) {
  for (int i = 0; i < count; ++i) {
    DestructionElement(arrays[i]);
  }
  return 0;
}

int ZORTavMemoryManager::DestructionElement(char*& array) {
  std::free(array);
  array = nullptr;
  return 0;
}

// Beyond the last group the tables hold nothing that could be released.
void ZORTavMemoryManager::ReleaseAlone(long long group) {
  if (group >= 1 && group <= GroupCount) {
    ReleaseBlocks(GroupEndTable[group - 1] + 1, GroupEndTable[group]);
  }
}

void ZORTavMemoryManager::ReleaseBlocks(int first, int last) {
  for (int i = first; i <= last; ++i) {
    if (BlockTable[i] != nullptr) {
      std::free(BlockTable[i]);
      BlockTable[i] = nullptr;
      MemoryUsed -= LengthTable[i];
      LengthTable[i] = 0;
    }
  }
}
