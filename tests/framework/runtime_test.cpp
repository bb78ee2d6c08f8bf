// SPDX-License-Identifier: MIT
#include <fenv.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "ZORRuntime.h"
#include "ZORTAVConfiguration.h"

namespace {

// Run in a child: SIGALRM ends it where the stop hangs.
[[noreturn]] void stop_with_unwritten_output_while_a_thread_waits_for_input(int output) {
  alarm(10);
  int input[2];
  std::FILE* unwritten = fdopen(output, "w");
  if (unwritten == nullptr || std::fputs("not yet written", unwritten) < 0 || pipe(input) != 0 ||
      dup2(input[0], STDIN_FILENO) != STDIN_FILENO) {
    std::exit(3);
  }
  std::thread([] { std::fgetc(stdin); }).detach();
  while (ftrylockfile(stdin) == 0) {  // until the reader has it
    funlockfile(stdin);
    std::this_thread::yield();
  }
  ZORRuntimeStop("DGEMM FATAL ERROR");
}

TEST(Runtime, StopWritesItsTextFlushesAndExitsWithOne) {
  int output[2];
  ASSERT_EQ(pipe(output), 0);
  EXPECT_EXIT(stop_with_unwritten_output_while_a_thread_waits_for_input(output[1]), testing::ExitedWithCode(1),
              testing::Eq("DGEMM FATAL ERROR\n"));
  close(output[1]);
  char text[64] = "";
  EXPECT_GE(read(output[0], text, sizeof text - 1), 0);
  EXPECT_STREQ(text, "not yet written");
  close(output[0]);
}

// Run in a child: a trap that is left ends it.
[[noreturn]] void divide_by_zero_after_clearing() {
  feenableexcept(FE_DIVBYZERO | FE_INVALID | FE_OVERFLOW | FE_UNDERFLOW | FE_INEXACT);
  ZORRuntimeSetExceptionMode(1);
  const bool only_zero_clears = fegetexcept() != 0;
  fesetround(FE_UPWARD);
  clrfpe();
  volatile double zero = 0.0;
  volatile double result = 1.0 / zero;
  result = result * zero;
  const bool others_kept = fegetround() == FE_UPWARD && fetestexcept(FE_DIVBYZERO) != 0;
  std::exit(only_zero_clears && fegetexcept() == 0 && others_kept ? 0 : 4);
}

TEST(Runtime, ClearingTheExceptionModeLeavesNoTrap) {
  EXPECT_EXIT(divide_by_zero_after_clearing(), testing::ExitedWithCode(0), "");
}

}  // namespace
