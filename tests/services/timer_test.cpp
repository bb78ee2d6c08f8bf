// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <thread>
#include <valarray>

#include "ZORTavTimer.h"
#include "test_system.h"

namespace {

using Seconds = std::valarray<double>;  // of processor time, and elapsed

// How far the clocks of the system may lie apart: a tick of the scheduler, steps of the millisecond counter.
void expect_at_most(const Seconds& less, const Seconds& more) {
  EXPECT_LE(less[0], more[0] + 0.02);
  EXPECT_LE(less[1], more[1] + 0.003);
}

// Clocks of the system's own, cut to the 32 bits of a millisecond counter.
Seconds now() {
  return {zortest::process_seconds(), std::fmod(zortest::seconds_since_start(), 4294967.296)};
}

Seconds sums(const ZORTavTimer& timer) {
  return {timer.GetCPU(), timer.GetElapsed()};
}

// In a thread of its own: the timer counts the whole process.
void work() {
  std::thread([] {
    const double end = zortest::thread_seconds() + 0.06;
    while (zortest::thread_seconds() < end) {
    }
  }).join();
}

// A machine that is busy stops the test anywhere: a sum is held against stretches that lie within its intervals and
// stretches that its intervals lie within.
TEST(Timer, AddsUpItsIntervalsAndNothingBetween) {
  ZORTavTimer timer;
  Seconds within(2);
  Seconds around(2);
  for (int interval = 0; interval < 3; ++interval) {
    timer.Stop();  // adds nothing
    expect_at_most(within, sums(timer));
    expect_at_most(sums(timer), around);
    const Seconds before = now();
    timer.Start();
    const Seconds started = now();
    work();
    timer.Start();  // moves nothing
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    const Seconds running = now();
    expect_at_most(within + running - started, sums(timer));
    expect_at_most(sums(timer), around + now() - before);
    const Seconds stopping = now();
    timer.Stop();
    within += stopping - started;
    around += now() - before;
    work();
  }
}

// The fields of a timer, in their order.
struct Fields {
  double cpu, elapsed;
  int32_t running;
  double elapsed_start, cpu_start;
  ZORProcessHandle process;

  explicit Fields(const ZORTavTimer& timer) {
    static_assert(sizeof(Fields) == sizeof(ZORTavTimer));
    std::memcpy(static_cast<void*>(this), static_cast<const void*>(&timer), sizeof *this);
  }
  void expect(int32_t is_running, const Seconds& started_after) const {
    EXPECT_EQ(running, is_running);
    EXPECT_EQ(process, ZORGetCurrentProcess());
    expect_at_most(started_after, {cpu_start, elapsed_start});
    expect_at_most({cpu_start, elapsed_start}, now());
  }
};

TEST(Timer, AResetStopsItAndACopyRunsOn) {
  ZORTavTimer timer;
  const Seconds before_start = now();
  timer.Start();
  const Seconds started = now();
  Fields(timer).expect(1, before_start);
  work();
  ZORTavTimer copy;
  copy = timer;
  const Seconds before_reset = now();
  timer.Reset();
  Fields(timer).expect(0, before_reset);
  work();
  timer.Stop();
  EXPECT_TRUE(timer.GetCPU() == 0 && timer.GetElapsed() == 0);
  expect_at_most(now() - started, sums(copy));
  copy.Stop();
  EXPECT_EQ(Fields(copy).running, 0);
  EXPECT_EQ(Fields(copy).cpu, copy.GetCPU());
  EXPECT_EQ(Fields(copy).elapsed, copy.GetElapsed());
}

}  // namespace
