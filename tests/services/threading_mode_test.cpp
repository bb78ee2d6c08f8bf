// SPDX-License-Identifier: MIT
#include "services/threading_mode.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "ZORTAVConfiguration.h"

namespace {

TEST(ThreadingMode, StaysSingleUntilDecidedAndThenStays) {
  setenv("OMP_NUM_THREADS", "3", 1);
  EXPECT_EQ(zortav::threading_mode(), 0);
  int32_t mode = -1;
  int32_t reserved1 = -1;
  int32_t reserved2 = -1;
  getblas(&mode, &reserved1, &reserved2);
  EXPECT_EQ(mode, 2);
  EXPECT_EQ(zortav::threading_mode(), 0) << "a caller of getblas keeps the mode to itself";

  int32_t decision = -1;
  ehaldb(&decision);
  EXPECT_EQ(decision, 0);
  EXPECT_EQ(zortav::threading_mode(), 2);

  setenv("OMP_NUM_THREADS", "1", 1);
  ehaldb(&decision);
  EXPECT_EQ(decision, 0);
  EXPECT_EQ(zortav::threading_mode(), 2);
}

}  // namespace
