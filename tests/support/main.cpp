// SPDX-License-Identifier: MIT
// The test programs' main: says at which instruction-set level they run, and skips a level that is not to be had.
#include <gtest/gtest.h>

#include <cstdio>

#include "ZORTAVInstructionSet.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  int32_t active = 0;
  int32_t highest = 0;
  int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  if (reason == ZORTavInstructionSetReasonNotOffered) {
    std::printf("this machine offers levels up to %s: skipped\n", ehisanm(&highest));
    return 77;
  }
  std::printf("instruction-set level: %s\n", ehisanm(&active));
  return RUN_ALL_TESTS();
}
