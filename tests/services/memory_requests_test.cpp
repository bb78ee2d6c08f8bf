// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "services/managed_memory.h"

namespace {

using zortest::Manager;
using zortest::MemoryRefusal;
using MemoryRequests = zortest::MemoryTest;
using Lengths = std::vector<long long>;
using Sizes = std::vector<std::size_t>;

constexpr char null_length[] = "0 ERR_0001 Null Allocation Length";
const std::string negative_length = "0 ERR_0001 NEGATIVE ALLOCATION LENGTH : ";

TEST_F(MemoryRequests, CountInWordsWithASpareOne) {
  Manager manager;
  const MemoryRefusal count;
  Lengths lengths{8, 1, 7, 15, 16, 800};
  manager.arrays.resize(lengths.size());
  char** arrays = manager.arrays.data();
  EXPECT_EQ(manager.Allocation(6, manager.group, arrays, lengths.data()), 0);
  EXPECT_EQ(lengths, (Lengths{2, 1, 1, 2, 3, 101}));
  EXPECT_EQ(count.sizes(), (Sizes{24, 16, 16, 24, 32, 816}));
  EXPECT_EQ(manager.blocks(), lengths);
  EXPECT_EQ(manager.MemoryUsed, 110);
  EXPECT_EQ(manager.allocate({-8, 8}), 0);  // 0 and 2 words
  EXPECT_EQ(manager.GetMemoryUsed(), 112.0F);
  EXPECT_NE(manager.BlockTable[6], nullptr);
}

TEST_F(MemoryRequests, LengthsThatCannotBe) {
  Manager manager;
  const MemoryRefusal count;
  for (const Lengths& lengths : {Lengths{0}, Lengths{8, 0, -16}, Lengths{}, Lengths{-8}, Lengths{-8, -15}}) {
    EXPECT_EQ(manager.allocate(lengths), E_FAIL);
    expect_report(null_length);
  }
  const std::pair<Lengths, const char*> negative[] = {{{-16}, "4294967295\n"},
                                                      {{8, 8, -80}, "4294967291\n"},
                                                      {{-8, -16, 8}, "4294967295\n"},
                                                      {{-(1LL << 40) * 8}, "1\n"}};
  for (const auto& [lengths, sum] : negative) {
    manager.ResetModeWarning();
    EXPECT_EQ(manager.allocate(lengths), E_FAIL);
    expect_report(negative_length + sum);
    manager.SetModeWarning(777);
    EXPECT_EQ(manager.allocate(lengths), 8);
    expect_report("2 WARN_0777 refused[]");
  }
  // What the pointers before a negative length hold is freed.
  char kept = 0;
  char* arrays[] = {static_cast<char*>(std::malloc(8)), nullptr, static_cast<char*>(std::malloc(8)), &kept, &kept};
  Lengths lengths{8, 8, 8, -16, 8};
  EXPECT_EQ(manager.Allocation(5, manager.group, arrays, lengths.data()), 8);
  EXPECT_TRUE(arrays[0] == nullptr && arrays[2] == nullptr && arrays[3] == &kept && arrays[4] == &kept);
  EXPECT_TRUE(count.requests() == 0 && manager.GetIndiceAllocation() == 1 && manager.group == -1);
}

TEST_F(MemoryRequests, OneBlockForAllArrays) {
  Manager manager;
  manager.SeparateBlocks = 0;
  const MemoryRefusal count;
  ASSERT_EQ(manager.allocate({8, 100, 1}), 0);
  EXPECT_EQ(count.sizes(), (Sizes{(2 + 13 + 1) * 8 + 8}));
  EXPECT_EQ(manager.blocks(), Lengths{16});
  // No memory for one block, but for several.
  const MemoryRefusal large(MemoryRefusal::never, MemoryRefusal::never, 1000);
  ASSERT_EQ(manager.allocate({800, 800}), 0);
  EXPECT_EQ(large.sizes(), (Sizes{202 * 8 + 8, 816, 816}));
  // A sum that no size holds is no request for a small block.
  EXPECT_EQ(manager.allocate(Lengths(2, std::numeric_limits<long long>::max())), E_FAIL);
  EXPECT_EQ(large.requests(), 3);
  expect_report("1 ERR_0302 no memory 0 0");
}

TEST_F(MemoryRequests, PairsReceiveAsManyArraysAsAreCounted) {
  Manager manager;
  char kept = 0;
  char* p[11];
  std::fill_n(p, 11, &kept);
  const auto request = [&](int count) {
    return manager.Allocation(count, manager.group, p[0], 8, p[1], 16, p[2], 24, p[3], 32, p[4], 40, p[5], 48, p[6], 56,
                              p[7], 64, p[8], 72, p[9], 80, p[10], 88);
  };
  for (const int count : {0, -3, 12, 1000}) {
    EXPECT_EQ(request(count), E_FAIL);
    expect_report(null_length);
  }
  EXPECT_EQ(request(1), 0);
  EXPECT_EQ(std::count(p, p + 11, &kept), 10);
  EXPECT_EQ(request(11), 0);
  EXPECT_EQ(manager.blocks(), (Lengths{2, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
  zortest::fill({p, p + 11}, {16, 24, 32, 40, 48, 56, 64, 72, 80, 88, 96});
}

TEST_F(MemoryRequests, TypedArraysAndWhereTheirListEnds) {
  Manager manager;
  int* i = nullptr;
  float* f = nullptr;
  double* d = nullptr;
  char* c = nullptr;
  char** t = nullptr;
  const ZORTavTypeEncapMemory none;
  ZORTavTypeEncapMemory number;  // a handle that is not empty and whose elements have no size
  static_cast<ZORTavTypeEncap&>(number) = ZORTavTypeEncapError(7);
  int& g = manager.group;
  ASSERT_EQ(manager.Allocation(g, i, 10, f, 11, d, 12, c, 13, t, 14, i, 15, i, 16, i, 17, i, 18, i, 19, d, 20), 0);
  EXPECT_EQ(manager.blocks(), (Lengths{6, 6, 13, 2, 15, 8, 9, 9, 10, 10, 21}));
  t[13] = c + 12;
  d[19] = f[10] = 1;
  i[18] = 1;
  ASSERT_EQ(manager.Desallocation(1), 0);

  // What stands behind an empty handle is ignored, also when it could not be allocated.
  EXPECT_EQ(manager.Allocation(g, i, 10, none, 5, d, 12, number, 5), 0);
  EXPECT_EQ(manager.Allocation(g, d, 1, i, 0, none, 0, c, 0), 0);
  EXPECT_EQ(manager.blocks(), (Lengths{6, 2}));
  constexpr char not_recognized[] = "0 ERR_0001 Memory allocation: Array type not recognized";
  const std::pair<int, std::string> refused[] = {
      {manager.Allocation(g, d, 1, i, 0, none, 3), not_recognized},
      {manager.Allocation(g, i, 0, c, 0, d, 0, c, 0, c, 0, c, 0, c, 0, c, 0, c, 0, c, 0, c, 1), not_recognized},
      {manager.Allocation(g, d, 1, d, 1, d, 1, d, 1, d, 1, d, 1, d, 1, d, 1, d, 1, d, 1, number, 1), not_recognized},
      {manager.Allocation(g, none, 3, d, 1), null_length},
      {manager.Allocation(g, d, 0), null_length},
      {manager.Allocation(g, i, -4, d, 1), negative_length + "4294967295\n"}};
  Texts texts;
  for (const auto& [status, text] : refused) {
    EXPECT_EQ(status, E_FAIL) << text;
    texts.push_back(text);
  }
  EXPECT_EQ(reports.take(), texts);
}

TEST_F(MemoryRequests, TheSelfTestPassesAndFailsWithTheMemory) {
  EXPECT_EQ(ZORTavTypeEncapMemory::Test(), 0);
  expect_no_report();
  const MemoryRefusal real8(MemoryRefusal::never, MemoryRefusal::never, 810);  // 110 doubles are 111 words
  EXPECT_EQ(ZORTavTypeEncapMemory::Test(), E_FAIL);
  expect_report("1 ERR_0302 no memory 0 0");
}

}  // namespace
