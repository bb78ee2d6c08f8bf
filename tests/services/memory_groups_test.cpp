// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <new>
#include <numeric>

#include "services/managed_memory.h"

namespace {

using zortest::Manager;
using zortest::MemoryRefusal;
using MemoryGroups = zortest::MemoryTest;
using Lengths = std::vector<long long>;

TEST_F(MemoryGroups, ThatAreNotThereAreReleasedWithoutAWord) {
  Manager manager;
  for (int g = 1; g <= 4; ++g) {
    ASSERT_EQ(manager.allocate(Lengths(static_cast<std::size_t>(g), 8 * g)), 0);
  }
  EXPECT_EQ(manager.Desallocation(0), E_FAIL);
  for (const int absent : {5, INT_MAX, -5, INT_MIN}) {
    EXPECT_EQ(manager.Desallocation(absent), 0);
  }
  const int groups[] = {4, 0, -1, 5, INT_MAX, 1};
  EXPECT_EQ(manager.Desallocation(5, groups), 0);
  EXPECT_EQ(manager.blocks(), (Lengths{2, 3, 3, 4, 4, 4, 0, 0, 0, 0}));
  EXPECT_EQ(manager.MemoryUsed, 20);
  EXPECT_EQ(manager.Desallocation(2), 0);
  ASSERT_EQ(manager.allocate({80}), 0);
  EXPECT_EQ(manager.group, 2);
  EXPECT_EQ(manager.PeakGroupCount, 4);
}

TEST_F(MemoryGroups, OfNoManagerAreFreedPointerByPointer) {
  Manager manager;
  char* arrays[] = {static_cast<char*>(std::malloc(1)), nullptr, static_cast<char*>(std::malloc(1))};
  EXPECT_EQ(manager.Desallocation(2, arrays), 0);
  EXPECT_TRUE(arrays[0] == nullptr && arrays[2] != nullptr);
  EXPECT_EQ(manager.DestructionElement(arrays[2]), 0);
  EXPECT_EQ(arrays[2], nullptr);
}

TEST_F(MemoryGroups, TablesGrowAheadOfTheirBlocks) {
  for (const int separate : {1, 0}) {
    Manager manager(100);
    manager.SeparateBlocks = separate;
    for (int g = 1; g <= 350; ++g) {
      // Entries in use: 0 to g − 2. One more is kept free, and one for the block.
      const int capacity = g < 100 ? 100 : g < 200 ? 200 : g < 300 ? 300 : 400;
      ASSERT_EQ(manager.allocate({8}), 0);
      ASSERT_EQ(manager.TableCapacity, capacity) << g;
    }
    EXPECT_EQ(manager.blocks(), Lengths(350, 2));
    EXPECT_EQ(manager.Desallocation(1), 0);
    EXPECT_EQ(manager.MemoryUsed, 0);
  }
  // One request past several sizes of the tables, and tables of any size.
  for (const int size : {1, 2, 1000, 0, -1}) {
    Manager manager(size);
    ASSERT_EQ(manager.allocate(Lengths(250, 8)), 0);
    EXPECT_EQ(manager.blocks(), Lengths(250, 2));
  }
}

// The fields in memory, after the table of virtual operations.
struct Fields {
  void* operations;
  void* tables[3];
  int32_t capacity, groups, peak_groups, unnamed;
  int64_t step, used, peak_used;
  int32_t mode, separate;
};

TEST_F(MemoryGroups, ACopyIsTheSameFieldsInTheSameOrder) {
  static_assert(sizeof(ZORTavMemoryManager) == sizeof(Fields));
  Manager manager(150);
  ASSERT_EQ(manager.allocate({8, 16}), 0);
  ASSERT_EQ(manager.allocate({80}), 0);
  ASSERT_EQ(manager.Desallocation(2), 0);
  manager.SetModeWarning(777);
  alignas(ZORTavMemoryManager) unsigned char storage[2][sizeof(Fields)];  // only one of the managers is destroyed
  const auto* copy = new (storage[0]) ZORTavMemoryManager(manager);
  new (storage[1]) ZORTavMemoryManager(manager);
  *std::launder(reinterpret_cast<ZORTavMemoryManager*>(storage[1])) = *copy;
  for (const auto& bytes : storage) {
    Fields fields;
    std::memcpy(&fields, bytes, sizeof fields);
    EXPECT_EQ(fields.tables[0], static_cast<void*>(manager.BlockTable));
    EXPECT_EQ(fields.tables[1], static_cast<void*>(manager.LengthTable));
    EXPECT_EQ(fields.tables[2], static_cast<void*>(manager.GroupEndTable));
    EXPECT_EQ((Lengths{fields.capacity, fields.groups, fields.peak_groups, fields.step, fields.used, fields.peak_used,
                       fields.mode, fields.separate}),
              (Lengths{150, 1, 2, 150, 5, 16, 777, 1}));
  }
}

TEST_F(MemoryGroups, ReallocationCountsNoSpareWordAndKnowsTheArray) {
  Manager manager;
  ASSERT_EQ(manager.allocate({8, 80}), 0);
  char* array = manager.arrays[1];
  std::iota(array, array + 80, char{1});
  const std::string contents(array, 44);
  const MemoryRefusal count;
  EXPECT_EQ(manager.Reallocation(1, array, 100000), 0);
  EXPECT_EQ(count.sizes(), std::vector<std::size_t>{100008});
  EXPECT_EQ(manager.blocks(), (Lengths{2, 12500}));
  array = nullptr;
  EXPECT_EQ(manager.Reallocation(1, array, 44), 0);
  EXPECT_EQ(manager.blocks(), (Lengths{2, 5}));
  for (const int absent : {0, 2, -1, INT_MIN}) {
    EXPECT_EQ(manager.Reallocation(absent, array, 8), E_FAIL);
  }
  EXPECT_EQ(std::string(array, 44), contents);

  char* lost = array;
  const MemoryRefusal all(1);
  EXPECT_EQ(manager.Reallocation(1, array, LLONG_MAX), 0);
  EXPECT_TRUE(array == nullptr && manager.BlockTable[1] == nullptr);
  EXPECT_EQ(manager.MemoryUsed, 2 + LLONG_MAX / 8);
  std::free(lost);
}

TEST_F(MemoryGroups, ManualReallocationRefusesNoLengthAndNoGroup) {
  Manager manager;
  ASSERT_EQ(manager.allocate({16}), 0);
  char* array = manager.arrays[0];
  std::memcpy(array, "contents of 1st", 16);
  char* before = array;
  int group = 1;
  EXPECT_EQ(manager.ManualReallocation(group, array, 8, 0), E_FAIL);
  expect_report("0 ERR_0001 Null Allocation Length");
  int none = 0;
  EXPECT_EQ(manager.ManualReallocation(none, array, 8, 8), E_FAIL);
  EXPECT_EQ(manager.GetIndiceAllocation(), 3);
  EXPECT_TRUE(none == 0 && group == 1 && array == before);
  int beyond = INT_MIN;  // its opposite names no group: nothing is released
  EXPECT_EQ(manager.ManualReallocation(beyond, array, 8, 8), 0);
  EXPECT_EQ(beyond, 3);
  EXPECT_STREQ(before, "contents of 1st");
}

}  // namespace
