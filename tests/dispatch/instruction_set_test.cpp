// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>

#include "ZORTAVInstructionSet.h"

namespace {

struct Active {
  int32_t level = -1, highest = -1, reason = -1;
  Active() { ehgetisa(&level, &highest, &reason); }
};

TEST(InstructionSet, TheEnvironmentChoosesTheLevelAndEveryOfferedOneCanBeForced) {
  const Active at_load;
  ASSERT_NE(std::getenv("TAV_INSTRUCTION_SET"), nullptr) << "run through ctest";
  EXPECT_STREQ(ehisanm(&at_load.level), std::getenv("TAV_INSTRUCTION_SET"));
  EXPECT_EQ(at_load.reason, ZORTavInstructionSetReasonEnvironment);
  for (const int32_t level : {0, 1, 2, 3, 99, -1}) {
    const Active before;
    int32_t status = -1;
    ehsetisa(&level, &status);
    const bool offered = level >= 0 && level <= at_load.highest;
    EXPECT_EQ(status, offered ? 0 : 1);
    EXPECT_EQ(Active().level, offered ? level : before.level);
    EXPECT_EQ(Active().reason, offered ? ZORTavInstructionSetReasonCall : before.reason);
  }
  const int32_t none = 3;
  EXPECT_STREQ(ehisanm(&none), "?");
}

}  // namespace
