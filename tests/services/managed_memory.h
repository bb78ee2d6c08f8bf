// SPDX-License-Identifier: MIT
// A memory manager that can be looked into, and the messages it raises.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "ZORStatus.h"
#include "ZORTavErrorTools.h"
#include "ZORTavMemoryManager.h"
#include "services/reports.h"
#include "support/memory_refusal.h"

namespace zortest {

struct Manager : ZORTavMemoryManager {
  using ZORTavMemoryManager::Allocation;
  using ZORTavMemoryManager::BlockTable;
  using ZORTavMemoryManager::GroupCount;
  using ZORTavMemoryManager::GroupEndTable;
  using ZORTavMemoryManager::LengthTable;
  using ZORTavMemoryManager::MemoryUsed;
  using ZORTavMemoryManager::PeakGroupCount;
  using ZORTavMemoryManager::PeakMemoryUsed;
  using ZORTavMemoryManager::SeparateBlocks;
  using ZORTavMemoryManager::TableCapacity;
  using ZORTavMemoryManager::ZORTavMemoryManager;

  // A group of arrays of these lengths in bytes; status and pointers are kept.
  int allocate(std::vector<long long> lengths) {
    arrays.assign(lengths.size(), nullptr);
    return status = Allocation(static_cast<int>(lengths.size()), group, arrays.data(), lengths.data());
  }
  // Lengths in words of the blocks that the tables hold, in order, 0 for one that is released.
  std::vector<long long> blocks() const {
    std::vector<long long> lengths;
    for (int i = 0; i <= GroupEndTable[GroupCount]; ++i) {
      EXPECT_TRUE(LengthTable[i] == 0 || BlockTable[i] != nullptr);
      lengths.push_back(LengthTable[i]);
    }
    return lengths;
  }

  int group = -1;
  int status = -1;
  std::vector<char*> arrays;
};

inline const Reports::Messages memory_messages = {{"ERR_0302", "no memory /p1 /p2"},
                                                  {"WARN_0300", "refused /p1 /p2"},
                                                  {"WARN_0777", "refused[/p1]"},
                                                  {"ERR_1025", "overflow"}};

struct MemoryTest : testing::Test {
  Reports reports{"ZORTAVMathKernelError", memory_messages};

  using Texts = std::vector<std::string>;
  void expect_report(const std::string& report) { EXPECT_EQ(reports.take(), Texts{report}); }
  void expect_no_report() { EXPECT_EQ(reports.take(), Texts{}); }
};

inline void fill(const std::vector<char*>& arrays, const std::vector<long long>& lengths) {
  for (std::size_t i = 0; i < arrays.size(); ++i) {
    ASSERT_EQ(reinterpret_cast<std::uintptr_t>(arrays[i]) % 8, 0U);
    std::memset(arrays[i], static_cast<int>(i + 1), static_cast<std::size_t>(lengths[i]));
  }
}

}  // namespace zortest
