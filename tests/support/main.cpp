// SPDX-License-Identifier: MIT
// The test programs' main: says at which instruction-set level they run, and skips a level that is not to be had.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "ZORTAVInstructionSet.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  int32_t active = 0;
  int32_t highest = 0;
  int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  const char* wanted = std::getenv("TAV_INSTRUCTION_SET");
  if (wanted != nullptr && std::string(wanted) != ehisanm(&active)) {
    std::printf("level %s is not offered by this machine (highest: %s): skipped\n", wanted, ehisanm(&highest));
    return 77;
  }
  std::printf("instruction-set level: %s\n", ehisanm(&active));
  return RUN_ALL_TESTS();
}
