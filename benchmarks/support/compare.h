// SPDX-License-Identifier: MIT
// Measures a routine beside its peer in one process: every iteration runs both, so that what else the machine does
// meets both alike; the counters are medians.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace zorbench {

inline double median(std::vector<double> x) {
  const auto middle = x.begin() + static_cast<std::ptrdiff_t>(x.size() / 2);
  std::nth_element(x.begin(), middle, x.end());
  return *middle;
}

// Seconds that `work` takes; `prepare` restores its input before it and is not timed.
template <class Prepare, class Work>
double seconds(Prepare&& prepare, Work&& work) {
  prepare();
  const auto start = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  return elapsed.count();
}

// Counters: GF/s of ours and of the peer (flops each), and ratio = peer time / our time, above 1 when ours is faster.
template <class Prepare, class Ours, class Peer>
void compare(benchmark::State& state, double flops, Prepare&& prepare, Ours&& ours, Peer&& peer) {
  std::vector<double> our_time;
  std::vector<double> peer_time;
  std::vector<double> ratio;
  for (auto _ : state) {
    our_time.push_back(seconds(prepare, ours));
    peer_time.push_back(seconds(prepare, peer));
    ratio.push_back(peer_time.back() / our_time.back());
    state.SetIterationTime(our_time.back());
  }
  state.counters["ours_GFs"] = flops / median(our_time) * 1e-9;
  state.counters["peer_GFs"] = flops / median(peer_time) * 1e-9;
  state.counters["ratio"] = median(ratio);
}

}  // namespace zorbench
