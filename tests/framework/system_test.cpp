// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <thread>

#include "ZORSystem.h"

namespace {

TEST(System, EnvironmentEntriesAreTheTextsThatWereGiven) {
  static char entry[] = "ZORTAV_TEST_ENTRY=one";
  static char empty[] = "ZORTAV_TEST_ENTRY=";
  EXPECT_EQ(ZORGetEnv("ZORTAV_TEST_ENTRY"), nullptr);
  EXPECT_EQ(ZORPutEnv(entry), 0);
  EXPECT_STREQ(ZORGetEnv("ZORTAV_TEST_ENTRY"), "one");
  EXPECT_EQ(ZORPutEnv(empty), 0);
  EXPECT_STREQ(ZORGetEnv("ZORTAV_TEST_ENTRY"), "") << "set but empty is set";
}

TEST(System, TellsTheMachine) {
  EXPECT_EQ(ZORGetOperatingSystem(0), 4);
  EXPECT_EQ(ZORGetPhysicalMemory(),
            static_cast<uint64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<uint64_t>(sysconf(_SC_PAGESIZE)));
}

TEST(System, TickCountIsMillisecondsSinceStart) {
  const auto boot_milliseconds = [] {
    timespec t{};
    clock_gettime(CLOCK_BOOTTIME, &t);
    return static_cast<int64_t>(t.tv_sec) * 1000 + t.tv_nsec / 1000000;
  };
  for (int i = 0; i < 3; ++i) {
    const int64_t before = boot_milliseconds();
    const uint32_t ticks = ZORGetTickCount();
    const int64_t after = boot_milliseconds();
    EXPECT_LE(ticks - static_cast<uint32_t>(before), static_cast<uint32_t>(after - before));
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

TEST(System, ProcessTimesCountHundredNanoseconds) {
  const auto processor_time = [] {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
  };
  const double end = processor_time() + 0.1;
  while (processor_time() < end) {
  }
  uint64_t kernel = 1;
  uint64_t user = 1;
  const double before = processor_time();
  EXPECT_EQ(ZORGetProcessTimes(ZORGetCurrentProcess(), &kernel, &user), 0);
  constexpr double scheduler_tick = 0.02;
  EXPECT_GE(static_cast<double>(kernel + user) * 1e-7, before - scheduler_tick);
  EXPECT_LE(static_cast<double>(kernel + user) * 1e-7, processor_time() + scheduler_tick);
  EXPECT_EQ(ZORGetProcessTimes(nullptr, &kernel, &user), 1);
  EXPECT_EQ(kernel + user, 0U);
}

}  // namespace
