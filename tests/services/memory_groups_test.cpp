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

TEST_F(MemoryGroups, AreReleasedLikeAStackOrAlone) {
  Manager manager;
  for (int g = 1; g <= 4; ++g) {
    ASSERT_EQ(manager.allocate(Lengths(static_cast<std::size_t>(g), 8 * g)), 0);
    EXPECT_EQ(manager.group, g);
  }
  EXPECT_EQ(manager.MemoryUsed, 2 + 6 + 12 + 20);
  EXPECT_EQ(manager.Desallocation(0), E_FAIL);
  for (const int absent : {5, INT_MAX, -5, INT_MIN}) {
    EXPECT_EQ(manager.Desallocation(absent), 0);
  }
  EXPECT_EQ(manager.MemoryUsed, 40);
  EXPECT_EQ(manager.Desallocation(-2), 0);
  EXPECT_EQ(manager.Desallocation(-2), 0);
  EXPECT_EQ(manager.blocks(), (Lengths{2, 0, 0, 4, 4, 4, 5, 5, 5, 5}));
  EXPECT_EQ(manager.MemoryUsed, 34);
  EXPECT_EQ(manager.GetIndiceAllocation(), 5);
  EXPECT_EQ(manager.Desallocation(2), 0);
  EXPECT_EQ(manager.GetIndiceAllocation(), 2);
  EXPECT_EQ(manager.MemoryUsed, 2);
  ASSERT_EQ(manager.allocate({80}), 0);
  EXPECT_EQ(manager.group, 2);
  EXPECT_EQ(manager.blocks(), (Lengths{2, 11}));
  EXPECT_EQ(manager.Desallocation(-1), 0);
  EXPECT_EQ(manager.GetIndiceAllocation(), 3);
  EXPECT_EQ(manager.Desallocation(1), 0);
  EXPECT_EQ(manager.MemoryUsed, 0);
  EXPECT_EQ(manager.GetMemoryUsed(), 40.0F);
  EXPECT_EQ(manager.PeakGroupCount, 4);
  expect_no_report();
}

TEST_F(MemoryGroups, ListsOfGroupsAndOfPointers) {
  Manager manager;
  for (int g = 1; g <= 4; ++g) {
    ASSERT_EQ(manager.allocate({8, 16}), 0);
  }
  const int groups[] = {4, 0, -1, 2, 2, 5, INT_MAX, 1};
  EXPECT_EQ(manager.Desallocation(7, groups), 0);
  EXPECT_EQ(manager.blocks(), (Lengths{2, 3, 0, 0, 2, 3, 0, 0}));
  EXPECT_EQ(manager.MemoryUsed, 10);
  EXPECT_EQ(manager.GetIndiceAllocation(), 5);
  char kept = 0;
  char* arrays[] = {static_cast<char*>(std::malloc(1)), nullptr, static_cast<char*>(std::malloc(1)), &kept};
  EXPECT_EQ(manager.Desallocation(2, arrays), 0);
  EXPECT_EQ(arrays[0], nullptr);
  EXPECT_EQ(manager.DestructionElement(arrays[2]), 0);
  EXPECT_EQ(manager.DestructionElement(arrays[2]), 0);
  EXPECT_EQ(arrays[2], nullptr);
  EXPECT_EQ(arrays[3], &kept);
  EXPECT_EQ(manager.MemoryUsed, 10);
}

TEST_F(MemoryGroups, TablesGrowAheadOfTheirBlocks) {
  for (const int separate : {1, 0}) {
    Manager manager(100);
    manager.SeparateBlocks = separate;
    std::vector<char*> first;
    for (int g = 1; g <= 350; ++g) {
      // Entries in use: 0 to g − 2. One more is kept free, and one for the block.
      const int capacity = g < 100 ? 100 : g < 200 ? 200 : g < 300 ? 300 : 400;
      ASSERT_EQ(manager.allocate({8}), 0);
      ASSERT_EQ(manager.TableCapacity, capacity) << g;
      std::memcpy(manager.arrays[0], &g, sizeof g);
      first.push_back(manager.arrays[0]);
    }
    for (int g = 350; g >= 1; --g) {
      EXPECT_EQ(*reinterpret_cast<int*>(first[static_cast<std::size_t>(g) - 1]), g);
      EXPECT_EQ(manager.Desallocation(g), 0);
      EXPECT_EQ(manager.MemoryUsed, 2 * (g - 1));
    }
    EXPECT_EQ(manager.TableCapacity, 400);
  }
  // One request past several sizes of the tables, and tables of any size.
  for (const int size : {1, 2, 100, 1000, 0, -1}) {
    Manager manager(size);
    ASSERT_EQ(manager.allocate(Lengths(250, 8)), 0);
    ASSERT_EQ(manager.allocate(Lengths(11, 8)), 0);
    EXPECT_EQ(manager.blocks(), Lengths(261, 2));
  }
}

TEST_F(MemoryGroups, ACopySharesEverything) {
  Manager manager;
  ASSERT_EQ(manager.allocate({8, 16}), 0);
  alignas(Manager) unsigned char storage[2][sizeof(Manager)];  // only one of the managers is destroyed
  auto* copy = new (storage[0]) Manager(manager);
  auto* assigned = new (storage[1]) Manager(1);
  std::free(assigned->BlockTable);
  std::free(assigned->LengthTable);
  std::free(assigned->GroupEndTable);
  *assigned = *copy;
  EXPECT_EQ(assigned->BlockTable, manager.BlockTable);
  EXPECT_EQ(assigned->blocks(), (Lengths{2, 3}));
  EXPECT_EQ(assigned->GetIndiceAllocation(), 2);
  EXPECT_EQ(assigned->GetMemoryUsed(), 5.0F);
  std::vector<char*>().swap(copy->arrays);
  std::vector<char*>().swap(assigned->arrays);
}

TEST_F(MemoryGroups, ReallocationKeepsTheContentsAndCountsNoSpareWord) {
  Manager manager;
  ASSERT_EQ(manager.allocate({8, 80}), 0);
  char* array = manager.arrays[1];
  std::iota(array, array + 80, char{1});
  const auto expect_contents = [&](int count) {
    for (int i = 0; i < count; ++i) {
      ASSERT_EQ(array[i], i + 1);
    }
  };
  const MemoryRefusal count;
  EXPECT_EQ(manager.Reallocation(1, array, 100000), 0);
  EXPECT_EQ(count.sizes(), std::vector<std::size_t>{100008});
  EXPECT_EQ(manager.blocks(), (Lengths{2, 12500}));
  EXPECT_EQ(manager.MemoryUsed, 12502);
  expect_contents(80);
  std::memset(array + 80, 0, 99920);
  array = nullptr;  // the manager knows it
  EXPECT_EQ(manager.Reallocation(1, array, 44), 0);
  EXPECT_EQ(manager.blocks(), (Lengths{2, 5}));
  expect_contents(44);
  EXPECT_EQ(manager.GetMemoryUsed(), 12502.0F);
  for (const int absent : {0, 2, -1, INT_MIN}) {
    EXPECT_EQ(manager.Reallocation(absent, array, 8), E_FAIL);
  }
  expect_contents(44);

  char* lost = array;
  {
    const MemoryRefusal all(1);
    EXPECT_EQ(manager.Reallocation(1, array, 800), 0);
  }
  EXPECT_EQ(array, nullptr);
  EXPECT_EQ(manager.BlockTable[1], nullptr);
  EXPECT_EQ(manager.MemoryUsed, 102);
  std::free(lost);
  expect_no_report();
}

TEST_F(MemoryGroups, ManualReallocationMovesTheArrayIntoAGroupOfItsOwn) {
  Manager manager;
  ASSERT_EQ(manager.allocate({16}), 0);
  char* array = manager.arrays[0];
  std::memcpy(array, "contents of 1st", 16);
  ASSERT_EQ(manager.allocate({8}), 0);
  int group = 1;
  EXPECT_EQ(manager.ManualReallocation(group, array, 16, 1000), 0);
  EXPECT_EQ(group, 3);
  EXPECT_STREQ(array, "contents of 1st");
  EXPECT_EQ(manager.blocks(), (Lengths{0, 2, 126}));
  EXPECT_EQ(manager.MemoryUsed, 128);
  // To a shorter array no more is copied than it holds.
  EXPECT_EQ(manager.ManualReallocation(group, array, 1000, 8), 0);
  EXPECT_EQ(group, 4);
  EXPECT_EQ(std::string(array, 16), std::string("contents of 1st", 16));
  EXPECT_EQ(manager.blocks(), (Lengths{0, 2, 0, 2}));

  char* before = array;
  EXPECT_EQ(manager.ManualReallocation(group, array, 8, 0), E_FAIL);
  expect_report("0 ERR_0001 Null Allocation Length");
  manager.SetModeWarning(777);
  EXPECT_EQ(manager.ManualReallocation(group, array, 8, -16), 8);
  expect_report("2 WARN_0777 refused[]");
  int none = 0;
  EXPECT_EQ(manager.ManualReallocation(none, array, 8, 8), E_FAIL);
  EXPECT_EQ(none, 0);
  EXPECT_EQ(manager.GetIndiceAllocation(), 6);
  EXPECT_EQ(group, 4);
  EXPECT_EQ(array, before);
}

}  // namespace
