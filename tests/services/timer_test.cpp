// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <time.h>

#include <chrono>
#include <cstring>
#include <thread>

#include "ZORTavTimer.h"

namespace {

// How far the clocks of the system may lie apart: a tick of the scheduler, steps of the millisecond counter.
constexpr double cpu_step = 0.02;
constexpr double elapsed_step = 0.003;

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

// Independent clocks. A machine that is busy stops the test anywhere: a measurement is held against a stretch that lies
// within it and one that it lies within.
class Stretch {
 public:
  double cpu() const { return processor_seconds(CLOCK_PROCESS_CPUTIME_ID) - cpu_; }
  double elapsed() const { return processor_seconds(CLOCK_BOOTTIME) - elapsed_; }

 private:
  double cpu_ = processor_seconds(CLOCK_PROCESS_CPUTIME_ID);
  double elapsed_ = processor_seconds(CLOCK_BOOTTIME);
};

struct Interval {
  Stretch outer;
  double cpu_before, elapsed_before;  // the timer's sums so far
  Stretch inner;

  explicit Interval(ZORTavTimer& timer) : cpu_before(timer.GetCPU()), elapsed_before(timer.GetElapsed()) {
    timer.Start();
    inner = Stretch();
  }
  void check(const ZORTavTimer& timer, double inner_cpu, double inner_elapsed) const {
    const double cpu = timer.GetCPU() - cpu_before;
    const double elapsed = timer.GetElapsed() - elapsed_before;
    EXPECT_GE(cpu, inner_cpu - cpu_step);
    EXPECT_LE(cpu, outer.cpu() + cpu_step);
    EXPECT_GE(elapsed, inner_elapsed - elapsed_step);
    EXPECT_LE(elapsed, outer.elapsed() + elapsed_step);
  }
  void check_running(const ZORTavTimer& timer) const { check(timer, inner.cpu(), inner.elapsed()); }
  void stop_and_check(ZORTavTimer& timer) const {
    const double inner_cpu = inner.cpu();
    const double inner_elapsed = inner.elapsed();
    timer.Stop();
    check(timer, inner_cpu, inner_elapsed);
  }
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
  const Interval first(timer);
  work(0.06);
  timer.Start();  // moves nothing
  work(0.06);
  first.check_running(timer);
  first.stop_and_check(timer);
  const double cpu = timer.GetCPU();
  const double elapsed = timer.GetElapsed();

  work(0.06);
  timer.Stop();  // adds nothing
  EXPECT_EQ(timer.GetCPU(), cpu);
  EXPECT_EQ(timer.GetElapsed(), elapsed);

  const Interval second(timer);
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  second.check_running(timer);
  second.stop_and_check(timer);
  EXPECT_GE(timer.GetElapsed(), elapsed + 0.1 - elapsed_step);
  EXPECT_LE(timer.GetCPU(), cpu + 0.05) << "sleep is no processor time";
}

TEST(Timer, CountsTheProcessorTimeOfEveryThread) {
  ZORTavTimer timer;
  timer.Start();
  std::thread other([] { work(0.1); });
  work(0.1);
  other.join();
  EXPECT_GE(timer.GetCPU(), 0.2 - cpu_step);
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
  const Interval interval(source);
  work(0.1);
  ZORTavTimer copy;
  copy = source;
  source.Reset();
  interval.check_running(copy);
  interval.stop_and_check(copy);
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
    std::memcpy(&fields, static_cast<const void*>(&timer), sizeof fields);
    return fields;
  };
  ZORTavTimer timer;
  const double cpu_before = processor_seconds(CLOCK_PROCESS_CPUTIME_ID);
  const double elapsed_before = ZORGetTickCount() / 1000.0;
  timer.Start();
  EXPECT_EQ(look(timer).running, 1);
  EXPECT_GE(look(timer).elapsed_start, elapsed_before);
  EXPECT_LE(look(timer).elapsed_start, ZORGetTickCount() / 1000.0);
  EXPECT_GE(look(timer).cpu_start, cpu_before - cpu_step);
  EXPECT_LE(look(timer).cpu_start, processor_seconds(CLOCK_PROCESS_CPUTIME_ID) + cpu_step);
  EXPECT_EQ(look(timer).process, ZORGetCurrentProcess());
  work(0.02);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  timer.Stop();
  EXPECT_EQ(look(timer).running, 0);
  EXPECT_EQ(look(timer).cpu, timer.GetCPU());
  EXPECT_EQ(look(timer).elapsed, timer.GetElapsed());
  EXPECT_NE(timer.GetCPU(), timer.GetElapsed());

  const double elapsed_at_reset = ZORGetTickCount() / 1000.0;
  const double cpu_start = look(timer).cpu_start;
  timer.Reset();
  EXPECT_EQ(look(timer).running, 0);
  EXPECT_GE(look(timer).elapsed_start, elapsed_at_reset);
  EXPECT_GT(look(timer).cpu_start, cpu_start);
}

}  // namespace
