// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstring>
#include <new>

#include "ZORTavTypeEncapError.h"
#include "ZORTavTypeEncapMemory.h"
#include "support/memory_refusal.h"

namespace {

// A handle whose tag and value can be seen and set.
struct Open : ZORTavTypeEncapError {
  using ZORTavTypeEncapError::operator=;
  using ZORTavTypeEncap::Tag;
  using ZORTavTypeEncap::Value;
  explicit Open(ZORTavValue tag = ZORTavValueLast) { Tag = tag; }
  template <class Handle>
  explicit Open(const Handle& handle) {
    *this = handle;
  }
};

TEST(Handles, EmptinessAndSizesByTag) {
  const int empty = 1;
  const struct {
    int tag;
    int is_empty, size, pointed_tag, pointed_size;
  } tags[] = {{-1, empty, 0, 13, 0}, {0, 0, 4, 13, 0},       {1, 0, 4, 13, 0},      {2, 0, 8, 13, 0},
              {3, empty, 4, 13, 0},  {4, empty, 1, 13, 0},   {5, empty, 0, 13, 0},  {6, 0, 8, 0, 4},
              {7, 0, 0, 1, 4},       {8, 0, 0, 2, 8},        {9, 0, 8, 4, 1},       {10, 0, 0, 9, 8},
              {11, empty, 8, 13, 0}, {12, empty, 16, 13, 0}, {13, empty, 0, 13, 0}, {14, empty, 0, 13, 0}};
  for (const auto& expected : tags) {
    const auto tag = static_cast<ZORTavValue>(expected.tag);
    const Open handle(tag);
    ZORTavTypeEncapMemory array;
    static_cast<ZORTavTypeEncap&>(array) = handle;
    EXPECT_EQ(handle.IsEmpty(), expected.is_empty != 0) << expected.tag;
    EXPECT_EQ(GetTavrinSizeOf(tag), expected.size) << expected.tag;
    EXPECT_EQ(GetPointedType(tag), expected.pointed_tag) << expected.tag;
    EXPECT_EQ(array.GetTavrinSizeOfPointedType(), expected.pointed_size) << expected.tag;
  }
  EXPECT_TRUE(ZORTavTypeEncapError::EmptyEncapEr.IsEmpty());
  EXPECT_TRUE(ZORTavTypeEncapError(static_cast<const char*>(nullptr)).IsEmpty());
  EXPECT_FALSE(ZORTavTypeEncapError("").IsEmpty());
  EXPECT_EQ(static_cast<char**>(ZORTavTypeEncapMemory()), nullptr);
  static_assert(sizeof(ZORTavTypeEncapMemory) == 16);
}

TEST(Handles, OwnTheirTexts) {
  char text[] = "first";
  Open first{ZORTavTypeEncapError(text)};
  text[0] = 'F';
  EXPECT_STREQ(first.Value.Text, "first");
  Open second{ZORTavTypeEncapError("second")};
  {
    const zortest::MemoryRefusal count;
    second = first;
    EXPECT_EQ(count.sizes(), std::vector<std::size_t>{sizeof "first"});
    const char* own = second.Value.Text;
    second = *&second;
    EXPECT_EQ(second.Value.Text, own);
    EXPECT_EQ(count.requests(), 1);
  }
  EXPECT_NE(second.Value.Text, first.Value.Text);
  first = ZORTavTypeEncapError(3);
  EXPECT_EQ(first.Tag, ZORTavValueInteger4);
  EXPECT_STREQ(second.Value.Text, "first");
  second = ZORTavTypeEncapError(static_cast<const char*>(nullptr));
  EXPECT_EQ(second.Tag, ZORTavValueString);
  EXPECT_TRUE(second.IsEmpty());
}

TEST(Handles, LeaveNothingBehind) {
  alignas(ZORTavTypeEncapError) unsigned char storage[sizeof(ZORTavTypeEncapError)];
  (new (storage) ZORTavTypeEncapError("text"))->~ZORTavTypeEncapError();
  struct {
    int64_t value;
    int32_t tag, unused;
  } fields;
  std::memcpy(&fields, storage, sizeof fields);
  EXPECT_EQ(fields.value, 0);
  EXPECT_EQ(fields.tag, ZORTavValueLast);
}

TEST(HandlesDeathTest, WithoutMemoryForATextTheProcessStops) {
  const auto exits = testing::ExitedWithCode(1);
  EXPECT_EXIT(
      {
        const zortest::MemoryRefusal first(1, 1);
        const ZORTavTypeEncapError handle("text");
      },
      exits, "AssertionFailed:_Value._Ptr\n.*ZORTavTypeEncap");
  EXPECT_EXIT(
      {
        const zortest::MemoryRefusal second(2, 2);
        const ZORTavTypeEncapError handle("text");
        const ZORTavTypeEncapError copy(handle);
      },
      exits, "AssertionFailed:copiedContent._Ptr\n.*ZORTavTypeEncap");
}

}  // namespace
