// SPDX-License-Identifier: MIT
#include <fenv.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include "ZORRuntime.h"
#include "ZORTAVConfiguration.h"

namespace {

TEST(Runtime, StopWritesItsTextFlushesAndExitsWithOne) {
  const std::string path =
      (std::filesystem::temp_directory_path() / ("zortav_stop_" + std::to_string(getpid()))).string();
  const auto leave_unflushed_and_stop = [&path] {
    std::FILE* open_file = std::fopen(path.c_str(), "w");
    if (open_file == nullptr) {
      std::exit(3);
    }
    std::fputs("not yet written", open_file);
    std::fputs("before; ", stderr);
    ZORRuntimeStop("DGEMM FATAL ERROR");
  };
  EXPECT_EXIT(leave_unflushed_and_stop(), testing::ExitedWithCode(1), testing::Eq("before; DGEMM FATAL ERROR\n"));
  std::ifstream file(path);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "not yet written");
  std::filesystem::remove(path);
}

// Run in a child: SIGALRM ends it where the stop hangs.
[[noreturn]] void stop_while_a_thread_waits_for_input() {
  alarm(10);
  int channel[2];
  if (pipe(channel) != 0 || dup2(channel[0], STDIN_FILENO) != STDIN_FILENO) {
    std::exit(3);
  }
  std::thread([] { std::fgetc(stdin); }).detach();
  while (ftrylockfile(stdin) == 0) {  // until the reader has it
    funlockfile(stdin);
    std::this_thread::yield();
  }
  ZORRuntimeStop("stopped");
}

TEST(Runtime, StopDoesNotWaitForAnotherThreadsInput) {
  EXPECT_EXIT(stop_while_a_thread_waits_for_input(), testing::ExitedWithCode(1), testing::Eq("stopped\n"));
}

// Run in a child: a trap that is left ends it.
[[noreturn]] void divide_by_zero_after(void (*clear)()) {
  feenableexcept(FE_DIVBYZERO | FE_INVALID | FE_OVERFLOW | FE_UNDERFLOW | FE_INEXACT);
  ZORRuntimeSetExceptionMode(1);
  if (fegetexcept() == 0) {
    std::exit(3);
  }
  fesetround(FE_UPWARD);
  clear();
  volatile double zero = 0.0;
  volatile double result = 1.0 / zero;
  result = result * zero;
  const bool others_kept = fegetround() == FE_UPWARD && fetestexcept(FE_DIVBYZERO) != 0;
  std::exit(fegetexcept() == 0 && others_kept ? 0 : 4);
}

TEST(Runtime, ClearingTheExceptionModeLeavesNoTrap) {
  EXPECT_EXIT(divide_by_zero_after(clrfpe), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(divide_by_zero_after([] { ZORRuntimeSetExceptionMode(0); }), testing::ExitedWithCode(0), "");
}

}  // namespace
