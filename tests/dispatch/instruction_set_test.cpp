// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "ZORTAVInstructionSet.h"

namespace {

struct Active {
  int32_t level = -1, highest = -1, reason = -1;
  Active() { ehgetisa(&level, &highest, &reason); }
};

TEST(InstructionSet, TheEnvironmentChoseTheLevel) {
  const Active now;
  ASSERT_NE(std::getenv("TAV_INSTRUCTION_SET"), nullptr) << "run through ctest";
  EXPECT_EQ(std::string(ehisanm(&now.level)), std::getenv("TAV_INSTRUCTION_SET"));
  EXPECT_EQ(now.reason, ZORTavInstructionSetReasonEnvironment);
}

TEST(InstructionSet, EveryOfferedLevelCanBeForcedAndNoOther) {
  const Active before;
  int32_t status = -1;
  for (int32_t level = 0; level <= before.highest; ++level) {
    ehsetisa(&level, &status);
    const Active now;
    EXPECT_EQ(status, 0);
    EXPECT_EQ(now.level, level);
    EXPECT_EQ(now.reason, ZORTavInstructionSetReasonCall);
  }
  for (const int32_t level : {-1, before.highest + 1, 99}) {
    ehsetisa(&level, &status);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(Active().level, before.highest);
  }
  const int32_t none = 3;
  EXPECT_STREQ(ehisanm(&none), "?");
}

}  // namespace
