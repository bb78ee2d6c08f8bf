// SPDX-License-Identifier: MIT
// The manager's life, its tables and its figures.
#include "ZORTavMemoryManager.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>

#include "ZORMemory.h"
#include "services/memory/memory_messages.h"
#include "services/memory/word_blocks.h"

namespace {

constexpr int usual_table_size = 100;

template <class T>
bool resize(T*& table, int entries) {
  const std::size_t bytes = static_cast<std::size_t>(entries) * sizeof(T);
  void* resized = table == nullptr ? ZORUnsecuredMemAlloc(bytes) : ZORUnsecuredMemRealloc(table, bytes);
  if (resized != nullptr) {
    table = static_cast<T*>(resized);
  }
  return resized != nullptr;
}

}  // namespace

char* ZORTavMemoryManager::NoArray = nullptr;

ZORTavMemoryManager::ZORTavMemoryManager() : ZORTavMemoryManager(usual_table_size) {}

ZORTavMemoryManager::ZORTavMemoryManager(int table_size)
    : BlockTable(nullptr),
      LengthTable(nullptr),
      GroupEndTable(nullptr),
      TableCapacity(0),
      GroupCount(0),
      PeakGroupCount(0),
      table_room_(0),
      GrowthStep(table_size >= 1 ? table_size : usual_table_size),
      MemoryUsed(0),
      PeakMemoryUsed(0),
      ModeWarning(0),
      SeparateBlocks(1) {
  ExtensionTable();
}

ZORTavMemoryManager::ZORTavMemoryManager(const ZORTavMemoryManager& other) = default;

ZORTavMemoryManager& ZORTavMemoryManager::operator=(const ZORTavMemoryManager& other) = default;

ZORTavMemoryManager::~ZORTavMemoryManager() {
  ReleaseBlocks(0, LastBlock());
  std::free(BlockTable);
  std::free(LengthTable);
  std::free(GroupEndTable);
}

// The capacity is raised even where the tables then cannot grow: it is what the report tells. The room tells what
// the tables really have, and the next request makes up for the difference.
int ZORTavMemoryManager::ExtensionTable() {
  if (TableCapacity > std::numeric_limits<int>::max() - GrowthStep) {
    return E_FAIL;
  }
  TableCapacity = static_cast<int>(TableCapacity + GrowthStep);
  return ResizeTables();
}

int ZORTavMemoryManager::ResizeTables() {
  if (!resize(BlockTable, TableCapacity) || !resize(LengthTable, TableCapacity) ||
      !resize(GroupEndTable, TableCapacity)) {
    return E_FAIL;
  }
  if (table_room_ == 0) {
    GroupEndTable[0] = -1;
  }
  table_room_ = TableCapacity;
  return 0;
}

// Room for the entries numbered up to the given one.
int ZORTavMemoryManager::MakeRoom(long long entry) {
  while (TableCapacity <= entry) {
    if (const int status = ExtensionTable(); status != 0) {
      return status;
    }
  }
  return table_room_ <= entry ? ResizeTables() : 0;
}

int ZORTavMemoryManager::LastBlock() const {
  return table_room_ == 0 ? -1 : GroupEndTable[GroupCount];
}

int ZORTavMemoryManager::ReportTableFailure() {
  const int available = static_cast<int>(zortav::available_words(TableCapacity) / zortav::words_per_kilobyte);
  Desallocation(GroupCount);
  return zortav::fail_without_memory(TableCapacity / zortav::words_per_kilobyte, available);
}

int ZORTavMemoryManager::GetIndiceAllocation() const {
  return GroupCount + 1;
}

float ZORTavMemoryManager::GetMemoryUsed() const {
  return static_cast<float>(PeakMemoryUsed);
}

void ZORTavMemoryManager::SetModeWarning(int mode) {
  ModeWarning = mode;
}

void ZORTavMemoryManager::ResetModeWarning() {
  ModeWarning = 0;
}
