// SPDX-License-Identifier: MIT
#include <fenv.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "ZORDescriptor.h"
#include "ZORRuntime.h"
#include "ZORTAVConfiguration.h"
#include "support/files.h"
#include "test_system.h"

namespace {

// Run in a child, which is ended by force where the stop hangs.
[[noreturn]] void stop_with_unwritten_output_while_a_thread_waits_for_input(const std::string& output) {
  zortest::limit_seconds(10);
  int input[2];
  std::FILE* unwritten = std::fopen(output.c_str(), "w");
  if (unwritten == nullptr || std::fputs("not yet written", unwritten) < 0 || !zortest::make_pipe(input) ||
      ZORReplaceDescriptor(input[0], zortest::descriptor_of(stdin)) != 0) {
    std::exit(3);
  }
  std::thread([] { std::fgetc(stdin); }).detach();
  zortest::wait_for_reader(stdin);
  ZORRuntimeStop("DGEMM FATAL ERROR");
}

TEST(Runtime, StopWritesItsTextFlushesAndExitsWithOne) {
  // A name without anything of the process: the child may be another one that comes by here.
  const std::string output = (std::filesystem::temp_directory_path() / "zortav_runtime_stop").string();
  EXPECT_EXIT(stop_with_unwritten_output_while_a_thread_waits_for_input(output), testing::ExitedWithCode(1),
              testing::Eq("DGEMM FATAL ERROR\n"));
  EXPECT_EQ(zortav::test::contents(output), "not yet written");
  std::filesystem::remove(output);
}

// Run in a child: a trap that is left ends it.
[[noreturn]] void divide_by_zero_after_clearing() {
  zortest::trap_everything();
  ZORRuntimeSetExceptionMode(1);
  const bool only_zero_clears = zortest::traps() == zortest::Traps::others;
  fesetround(FE_UPWARD);
  clrfpe();
  volatile double zero = 0.0;
  volatile double result = 1.0 / zero;
  result = result * zero;
  const bool others_kept = fegetround() == FE_UPWARD && fetestexcept(FE_DIVBYZERO) != 0;
  std::exit(only_zero_clears && zortest::traps() == zortest::Traps::none && others_kept ? 0 : 4);
}

TEST(Runtime, ClearingTheExceptionModeLeavesNoTrap) {
  EXPECT_EXIT(divide_by_zero_after_clearing(), testing::ExitedWithCode(0), "");
}

}  // namespace
