// SPDX-License-Identifier: MIT
// Blocks at addresses that no allocator here gives: this program's own ZORUnsecuredMemRealloc takes the place of the
// library's.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "services/managed_memory.h"

namespace {

alignas(8) char old_place[128];
alignas(8) char new_place[128];
void* given = nullptr;
std::size_t size = 0;
char* answer = nullptr;

}  // namespace

void* ZORUnsecuredMemRealloc(void* block, std::size_t bytes) noexcept {
  given = block;
  size = bytes;
  return std::memmove(answer, block, 80);
}

namespace {

// Every misalignment of the old block and of the new one, with the array known to the caller or not.
TEST(MemoryMisaligned, ReallocationLaysTheContentsWhereTheyBelong) {
  for (std::size_t from = 0; from < 8; ++from) {
    for (std::size_t to = 0; to < 8; ++to) {
      for (const bool known : {true, false}) {
        zortest::Manager manager;
        ASSERT_EQ(manager.allocate({8, 72}), 0);  // 10 words
        std::free(manager.BlockTable[1]);
        manager.BlockTable[1] = old_place + from;
        answer = new_place + to;
        char* aligned = old_place + (from + 7) / 8 * 8;
        for (int i = 0; i < 80; ++i) {
          aligned[i] = static_cast<char>(i + 1);
        }
        char* array = known ? aligned : nullptr;
        EXPECT_EQ(manager.Reallocation(1, array, 80), 0);
        EXPECT_EQ(given, old_place + from);
        EXPECT_EQ(size, 88U);
        EXPECT_EQ(manager.BlockTable[1], answer);
        EXPECT_EQ(manager.LengthTable[1], 10);
        ASSERT_EQ(array, new_place + (to + 7) / 8 * 8);
        for (int i = 0; i < 80; ++i) {
          ASSERT_EQ(array[i], i + 1) << from << " to " << to;
        }
        manager.BlockTable[1] = nullptr;
      }
    }
  }
}

}  // namespace
