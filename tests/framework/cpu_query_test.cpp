// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <thread>

#include "ZORMathematics.h"
#include "test_system.h"

namespace {

TEST(CpuQuery, FollowsTheAffinityMask) {
  EXPECT_GE(ZORCpuQuery::GetCores(), 1);
  EXPECT_LE(ZORCpuQuery::GetCores(), zortest::processors());
  std::thread([] {
    zortest::keep_one_processor();
    EXPECT_EQ(ZORCpuQuery::GetCores(), 1);
  }).join();
}

}  // namespace
