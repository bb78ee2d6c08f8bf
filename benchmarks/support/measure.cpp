// SPDX-License-Identifier: MIT
#include "support/measure.h"

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <thread>

#include "support/clock.h"

namespace zorbench {
namespace {

// OpenBLAS's idle threads spin for 2^26 cycles of the time stamp before they sleep.
constexpr std::chrono::milliseconds until_threads_sleep{40};
// Twice the largest last-level cache that one core of today's servers sees.
constexpr std::size_t eviction_bytes = std::size_t{64} << 20;
constexpr std::size_t cache_line = 64;
// Calls that cannot be repeated at once are sampled this often at least, unless they are very long.
constexpr std::size_t fewest_samples = 3;
constexpr double very_long = 4.0;    // times the contender's share
constexpr double first_call = 20.0;  // times a sample's length: no first call is that slow for being the first

void evict() {
  static std::vector<unsigned char> other(eviction_bytes);
  for (std::size_t at = 0; at < other.size(); at += cache_line) {
    ++other[at];
  }
}

double elapsed_seconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(now).count();
}

// How often the system took a processor from a thread of this process that wanted it.
long interruptions() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_nivcsw;
}

struct Sample {
  double seconds;    // of a call
  bool interrupted;  // only looked at where elapsed time is measured
};

Sample sample(const Case& c, const Contender& contender, std::size_t calls) {
  const bool alone = c.thread_count() == 1;
  if (!alone) {
    std::this_thread::sleep_for(until_threads_sleep);
    if (contender.prepare) {
      contender.prepare();
    }
    contender.run(1);
  }
  if (contender.prepare) {
    contender.prepare();
  }
  if (c.is_cold()) {
    evict();
  }
  const long before = interruptions();
  const double start = alone ? thread_seconds() : elapsed_seconds();
  contender.run(calls);
  const double end = alone ? thread_seconds() : elapsed_seconds();
  return {(end - start) / static_cast<double>(calls), !alone && interruptions() != before};
}

struct Runner {
  std::size_t calls = 1;
  double spent = 0.0;
  std::vector<double> seconds;
  std::vector<double> ratio;
  std::vector<double> undisturbed;

  bool goes_on(std::size_t round, const Effort& effort) const {
    const bool short_of_samples = undisturbed.size() < fewest_samples && spent < very_long * effort.seconds;
    return round < effort.rounds && (spent < effort.seconds || short_of_samples);
  }
  void take(const Sample& sample) {
    seconds.push_back(sample.seconds);
    spent += sample.seconds * static_cast<double>(calls);
    if (!sample.interrupted) {
      undisturbed.push_back(sample.seconds);
    }
  }
  double typical() const { return median(undisturbed.empty() ? seconds : undisturbed); }
};

// How many calls make a sample of the wanted length. The first calls of a routine are slow and tell nothing.
std::size_t calls_a_sample(const Case& c, const Contender& contender, const Effort& effort) {
  constexpr std::size_t most = std::size_t{1} << 24;
  if (contender.prepare || c.is_cold()) {
    return 1;
  }
  double seconds = sample(c, contender, 1).seconds;
  if (seconds > first_call * effort.batch) {
    return 1;
  }
  std::size_t calls = 1;
  for (seconds = sample(c, contender, 1).seconds;
       calls < most && seconds * static_cast<double>(calls) < effort.batch / 2;
       seconds = sample(c, contender, calls).seconds) {
    calls *= 4;
  }
  return calls;
}

}  // namespace

double median(std::vector<double> x) {
  const auto middle = x.begin() + static_cast<std::ptrdiff_t>(x.size() / 2);
  std::nth_element(x.begin(), middle, x.end());
  return *middle;
}

std::vector<Timing> measure(const Case& c, const Effort& effort) {
  std::this_thread::sleep_for(until_threads_sleep);
  const std::vector<Contender>& contenders = c.contenders();
  std::vector<Runner> runners(contenders.size());
  for (std::size_t i = 0; i < contenders.size(); ++i) {
    runners[i].calls = calls_a_sample(c, contenders[i], effort);
  }
  for (std::size_t round = 0; runners[0].goes_on(round, effort); ++round) {
    for (std::size_t turn = 0; turn < contenders.size(); ++turn) {
      const std::size_t i = (round + turn) % contenders.size();
      if (runners[i].goes_on(round, effort)) {
        runners[i].take(sample(c, contenders[i], runners[i].calls));
      }
    }
    for (Runner& runner : runners) {
      if (runner.seconds.size() == round + 1) {
        runner.ratio.push_back(runner.seconds.back() / runners[0].seconds.back());
      }
    }
  }
  std::vector<Timing> timings;
  for (const Runner& runner : runners) {
    const double ratio = c.thread_count() == 1 ? median(runner.ratio) : runner.typical() / runners[0].typical();
    timings.push_back({runner.typical(), ratio, runner.seconds.size(), runner.undisturbed.empty()});
  }
  return timings;
}

}  // namespace zorbench
