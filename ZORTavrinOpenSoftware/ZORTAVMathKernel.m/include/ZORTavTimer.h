/* SPDX-License-Identifier: MIT */
/* Processor time and elapsed time of the solver's phases, and the date for its listing. */
#ifndef ZORTAV_TIMER_H
#define ZORTAV_TIMER_H

#include <stdint.h>

#include "ZORSystem.h"

/**
 * Adds up the processor time of the whole process, all its threads, and the elapsed time over one or more intervals
 * between Start and Stop, in seconds.
 *
 *   time = Σ (stop point − start point), the last interval up to now while the timer runs
 *
 * Processor time is kernel plus user time in steps that the system chooses. Elapsed time follows a 32-bit counter of
 * milliseconds since system start: an interval in which the counter wraps (every 49.7 days) comes out 4294967.296
 * seconds short.
 *
 * Threads: a timer is used by one thread at a time.
 */
class ZOR_EXPORT ZORTavTimer {
 public:
  /** A stopped timer with both sums 0. */
  ZORTavTimer();
  /** A timer in the state of the other, running if the other runs. */
  ZORTavTimer(const ZORTavTimer& other);
  /** Takes over the whole state of the other, running if the other runs. */
  ZORTavTimer& operator=(const ZORTavTimer& other);
  ~ZORTavTimer();

  /** Begins an interval. Does nothing when the timer runs already. */
  void Start();
  /** Ends the interval and adds it to the sums. Does nothing when the timer does not run. */
  void Stop();
  /** Sets both sums to 0 and stops the timer. */
  void Reset();

  /** Processor time so far, in seconds, the running interval included. */
  double GetCPU() const;
  /** Elapsed time so far, in seconds, the running interval included. */
  double GetElapsed() const;

 private:
  double CpuNow() const;
  // The sum of two counts of 100 nanoseconds, in seconds.
  static double FileTimeAdd(uint64_t first, uint64_t second);

  double cpu_;
  double elapsed_;
  int32_t running_;
  double elapsed_start_;
  double cpu_start_;
  ZORProcessHandle process_;
};

/**
 * The local date and time as "Year : 2024 Day : 034 Hour : 09 h 05 m 07 s" (3 February 2024, 09:05:07): the day of the
 * year counts from 1 and has three digits; hour, minute and second have two.
 *
 * @param text [out] a zero-terminated text in a new buffer of 80 characters, which the caller releases with free;
 *             null when there is no memory for it. What text pointed at before is neither read nor released.
 *
 * Threads: may be called from any thread while none changes the environment.
 */
ZOR_EXPORT void TavGetDate(char*& text);

#endif
