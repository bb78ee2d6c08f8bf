// SPDX-License-Identifier: MIT
// Requests for a group of arrays: words(i) = bytes(i) / 8 + 1, one block for each array or one for all.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "ZORTAVConfiguration.h"
#include "ZORTavMemoryManager.h"
#include "services/memory/memory_messages.h"
#include "services/memory/word_blocks.h"

namespace {

constexpr char null_length[] = "Null Allocation Length";

// The next call goes on with separate blocks.
constexpr int no_block = 1;

void free_arrays(char** arrays, int count) {
  for (int i = 0; i < count; ++i) {
    std::free(arrays[i]);
    arrays[i] = nullptr;
  }
}

int kilobytes(long long words) {
  return static_cast<int>(words / zortav::words_per_kilobyte);
}

}  // namespace

struct ZORTavMemoryManager::Request {
  int count;
  char** arrays;
  const long long* words;
  long long sum;
  int last_block;  // in the tables, before the request; its end on success
};

int ZORTavMemoryManager::Allocation(int count, int& group, char** const& arrays, long long* lengths) {
  for (int i = 0; i < count; ++i) {
    if (lengths[i] == 0) {
      return zortav::fail(null_length);
    }
    lengths[i] = lengths[i] / zortav::word_bytes + 1;
  }
  if (count < 1) {
    return zortav::fail(null_length);
  }
  Request request{count, arrays, lengths, 0, LastBlock()};
  for (int i = 0; i < count; ++i) {
    if (lengths[i] < 0) {
      free_arrays(arrays, i);
      return RefuseNegativeLength(request.sum + lengths[i]);
    }
    request.sum += std::min(lengths[i], std::numeric_limits<long long>::max() - request.sum);
  }
  if (request.sum == 0) {
    return zortav::fail(null_length);
  }
  int status = SeparateBlocks == 0 ? AllocateOneBlock(request) : no_block;
  if (status == no_block) {
    status = AllocateBlocks(request);
  }
  if (status != 0) {
    return status;
  }
  ++GroupCount;
  PeakGroupCount = std::max(PeakGroupCount, GroupCount);
  GroupEndTable[GroupCount] = request.last_block;
  MemoryUsed += request.sum;
  PeakMemoryUsed = std::max(PeakMemoryUsed, MemoryUsed);
  group = GroupCount;
  return 0;
}

int ZORTavMemoryManager::RefuseNegativeLength(long long sum) const {
  if (ModeWarning != 0) {
    return zortav::refuse(ModeWarning);
  }
  char text[sizeof "NEGATIVE ALLOCATION LENGTH : 4294967295\n"];
  std::snprintf(text, sizeof text, "NEGATIVE ALLOCATION LENGTH : %lu\n",
                static_cast<unsigned long>(static_cast<std::uint32_t>(sum)));
  return zortav::fail(text);
}

int ZORTavMemoryManager::AllocateOneBlock(Request& request) {
  if (MakeRoom(request.last_block + 2LL) != 0) {
    return ReportTableFailure();
  }
  if (ModeWarning != 0) {
    int allowed = 0;
    ehalmxc(&allowed);
    if (request.sum >= allowed) {
      return zortav::status_refused;
    }
  }
  char* block = zortav::new_block(request.sum);
  if (block == nullptr) {
    return no_block;
  }
  char* array = zortav::aligned(block);
  for (int i = 0; i < request.count; ++i) {
    request.arrays[i] = array;
    array += zortav::word_bytes * request.words[i];
  }
  ++request.last_block;
  BlockTable[request.last_block] = block;
  LengthTable[request.last_block] = request.sum;
  return 0;
}

int ZORTavMemoryManager::AllocateBlocks(Request& request) {
  if (MakeRoom(request.count + 1LL + request.last_block) != 0) {
    return ReportTableFailure();
  }
  for (int i = 0; i < request.count; ++i) {
    const long long words = request.words[i];
    if (ModeWarning != 0) {
      int allowed = 0;
      ehalmxc(&allowed);
      if (words >= allowed) {
        TakeBack(request, i);
        return zortav::refuse(ModeWarning, kilobytes(words), kilobytes(allowed));
      }
    }
    char* block = zortav::new_block(words);
    if (block == nullptr) {
      return FailedBlock(request, i);
    }
    request.arrays[i] = zortav::aligned(block);
    BlockTable[request.last_block + 1 + i] = block;
    LengthTable[request.last_block + 1 + i] = words;
  }
  request.last_block += request.count;
  return 0;
}

// No memory for array i. The figures of the report have 32 bits, whatever the array's length.
int ZORTavMemoryManager::FailedBlock(Request& request, int i) {
  const int wanted = static_cast<int>(request.words[i]);
  const int available = kilobytes(zortav::available_words(wanted));
  if (ModeWarning == 0) {
    // Gives up the group made before this request, so that the solver has something to go on with.
    Desallocation(GroupCount);
    TakeBack(request, i);
    return zortav::fail_without_memory(kilobytes(wanted), available);
  }
  TakeBack(request, i);
  return zortav::refuse(ModeWarning, kilobytes(wanted), available);
}

// Releases the first arrays of a request that is not to be a group.
void ZORTavMemoryManager::TakeBack(Request& request, int count) {
  for (int i = 0; i < count; ++i) {
    char*& block = BlockTable[request.last_block + 1 + i];
    std::free(block);
    block = nullptr;
    request.arrays[i] = nullptr;
  }
}
