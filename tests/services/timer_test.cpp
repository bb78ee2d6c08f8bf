// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <time.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <thread>

#include "ZORTavTimer.h"

namespace {

// The machine may be busy: a measurement is trusted to this many seconds.
constexpr double tolerance = 0.05;

double processor_seconds(clockid_t clock) {
  timespec t{};
  clock_gettime(clock, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

void work(double seconds) {
  const double end = processor_seconds(CLOCK_THREAD_CPUTIME_ID) + seconds;
  while (processor_seconds(CLOCK_THREAD_CPUTIME_ID) < end) {
  }
}

// Independent clocks over the same stretch of time.
class Reference {
 public:
  double cpu() const { return processor_seconds(CLOCK_PROCESS_CPUTIME_ID) - cpu_; }
  double elapsed() const { return processor_seconds(CLOCK_MONOTONIC) - elapsed_; }

 private:
  double cpu_ = processor_seconds(CLOCK_PROCESS_CPUTIME_ID);
  double elapsed_ = processor_seconds(CLOCK_MONOTONIC);
};

TEST(Timer, IsZeroBeforeItIsStarted) {
  ZORTavTimer timer;
  EXPECT_EQ(timer.GetCPU(), 0);
  EXPECT_EQ(timer.GetElapsed(), 0);
  timer.Stop();
  EXPECT_EQ(timer.GetCPU(), 0);
  EXPECT_EQ(timer.GetElapsed(), 0);
}

TEST(Timer, AddsUpItsIntervalsAndNothingBetween) {
  ZORTavTimer timer;
  const Reference first;
  timer.Start();
  work(0.06);
  timer.Start();  // moves nothing
  work(0.06);
  EXPECT_NEAR(timer.GetCPU(), first.cpu(), tolerance);
  EXPECT_NEAR(timer.GetElapsed(), first.elapsed(), tolerance);
  timer.Stop();
  const double cpu = timer.GetCPU();
  const double elapsed = timer.GetElapsed();
  EXPECT_NEAR(cpu, first.cpu(), tolerance);
  EXPECT_NEAR(elapsed, first.elapsed(), tolerance);

  work(0.06);
  timer.Stop();  // adds nothing
  EXPECT_EQ(timer.GetCPU(), cpu);
  EXPECT_EQ(timer.GetElapsed(), elapsed);

  const Reference second;
  timer.Start();
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_NEAR(timer.GetElapsed(), elapsed + second.elapsed(), tolerance);
  timer.Stop();
  EXPECT_NEAR(timer.GetElapsed(), elapsed + second.elapsed(), tolerance);
  EXPECT_NEAR(timer.GetCPU(), cpu, tolerance) << "sleep is no processor time";
}

TEST(Timer, CountsTheProcessorTimeOfEveryThread) {
  ZORTavTimer timer;
  timer.Start();
  std::thread other([] { work(0.1); });
  work(0.1);
  other.join();
  EXPECT_GE(timer.GetCPU(), 0.2 - tolerance / 2);
}

TEST(Timer, ResetStopsAndClears) {
  ZORTavTimer timer;
  timer.Start();
  work(0.02);
  timer.Reset();
  work(0.02);
  EXPECT_EQ(timer.GetCPU(), 0);
  EXPECT_EQ(timer.GetElapsed(), 0);
  timer.Stop();
  EXPECT_EQ(timer.GetElapsed(), 0);
}

TEST(Timer, AssignmentTakesOverARunningInterval) {
  ZORTavTimer source;
  const Reference reference;
  source.Start();
  work(0.1);
  ZORTavTimer copy;
  copy = source;
  source.Reset();
  EXPECT_NEAR(copy.GetElapsed(), reference.elapsed(), tolerance);
  copy.Stop();
  EXPECT_NEAR(copy.GetCPU(), reference.cpu(), tolerance);
}

TEST(Timer, KeepsItsFieldsInOrder) {
  struct Fields {
    double cpu, elapsed;
    int32_t running;
    double elapsed_start, cpu_start;
    ZORProcessHandle process;
  };
  static_assert(sizeof(Fields) == sizeof(ZORTavTimer));
  const auto look = [](const ZORTavTimer& timer) {
    Fields fields;
    std::memcpy(&fields, &timer, sizeof fields);
    return fields;
  };
  ZORTavTimer timer;
  timer.Start();
  EXPECT_EQ(look(timer).running, 1);
  EXPECT_NEAR(look(timer).elapsed_start, ZORGetTickCount() / 1000.0, tolerance);
  EXPECT_NEAR(look(timer).cpu_start, processor_seconds(CLOCK_PROCESS_CPUTIME_ID), tolerance);
  EXPECT_EQ(look(timer).process, ZORGetCurrentProcess());
  work(0.02);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  timer.Stop();
  EXPECT_EQ(look(timer).running, 0);
  EXPECT_EQ(look(timer).cpu, timer.GetCPU());
  EXPECT_EQ(look(timer).elapsed, timer.GetElapsed());
  EXPECT_NE(timer.GetCPU(), timer.GetElapsed());
}

}  // namespace
