// SPDX-License-Identifier: MIT
// Compiled for the machine it runs on, so that the widest registers are used.
#include "support/limits.h"

#include <hwy/highway.h>

#include <algorithm>
#include <map>
#include <utility>

#include "support/clock.h"
#include "support/data.h"
#include "support/measure.h"

namespace zorbench {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Tag = hn::ScalableTag<double>;
using Vector = hn::Vec<Tag>;

constexpr std::size_t chains = 12;  // enough to hide every latency, and they stay in sixteen registers
constexpr int samples = 9;

volatile double sink;
volatile double factor = 0.999;
volatile double term = 1e-3;

template <bool fused>
double multiply_add(std::size_t steps) {
  const Tag d;
  const Vector a = hn::Set(d, factor);
  const Vector b = hn::Set(d, term);
  // Read again for every chain: chains that are known to be equal would be computed once.
  const auto start = [&] { return hn::Set(d, term); };
  Vector s0 = start(), s1 = start(), s2 = start(), s3 = start(), s4 = start(), s5 = start();
  Vector s6 = start(), s7 = start(), s8 = start(), s9 = start(), s10 = start(), s11 = start();
  const auto step = [&](Vector& s) { s = fused ? hn::MulAdd(s, a, b) : hn::Add(hn::Mul(s, a), b); };
  for (std::size_t i = 0; i < steps; ++i) {
    step(s0), step(s1), step(s2), step(s3), step(s4), step(s5);
    step(s6), step(s7), step(s8), step(s9), step(s10), step(s11);
  }
  const Vector sum = hn::Add(hn::Add(hn::Add(s0, s1), hn::Add(s2, s3)), hn::Add(hn::Add(s4, s5), hn::Add(s6, s7)));
  sink = hn::GetLane(hn::SumOfLanes(d, hn::Add(sum, hn::Add(hn::Add(s8, s9), hn::Add(s10, s11)))));
  return 2.0 * static_cast<double>(steps * chains * hn::Lanes(d));
}

// Each thread by its own processor time, so that other programs do not lower it.
template <bool fused>
double peak(int threads) {
  constexpr std::size_t steps = 200000;
  static std::map<int, double> known;
  double& rate = known[threads];
  for (int i = 0; rate == 0.0 || i < samples; ++i) {
    double sum = 0.0;
#pragma omp parallel num_threads(threads) reduction(+ : sum)
    {
      const double start = thread_seconds();
      const double operations = multiply_add<fused>(steps);
      sum += operations / (thread_seconds() - start);
    }
    rate = std::max(rate, sum);
  }
  return rate;
}

void pass(Traffic traffic, double* x, double* y, std::size_t n) {
  const Tag d;
  const std::size_t lanes = hn::Lanes(d);
  const std::size_t step = 4 * lanes;
  Vector s0 = hn::Zero(d), s1 = s0, s2 = s0, s3 = s0;
  const auto all = [&](const auto& at) {
    for (std::size_t i = 0; i + step <= n; i += step) {
      at(i, s0), at(i + lanes, s1), at(i + 2 * lanes, s2), at(i + 3 * lanes, s3);
    }
  };
  switch (traffic) {
    case Traffic::read:
      all([&](std::size_t i, Vector& s) { s = hn::Max(s, hn::Load(d, x + i)); });
      break;
    case Traffic::rewrite:
      all([&](std::size_t i, Vector& s) { hn::Store(hn::Max(s, hn::Load(d, x + i)), d, x + i); });
      break;
    case Traffic::copy:
      all([&](std::size_t i, Vector&) { hn::Store(hn::Load(d, x + i), d, y + i); });
      break;
    case Traffic::accumulate:
      all([&](std::size_t i, Vector&) { hn::Store(hn::Max(hn::Load(d, y + i), hn::Load(d, x + i)), d, y + i); });
      break;
    case Traffic::exchange:
      all([&](std::size_t i, Vector&) {
        const Vector from = hn::Load(d, x + i);
        hn::Store(hn::Load(d, y + i), d, x + i);
        hn::Store(from, d, y + i);
      });
      break;
  }
  sink = hn::GetLane(hn::Max(hn::Max(s0, s1), hn::Max(s2, s3)));
}

double bytes_moved(Traffic traffic, std::size_t n) {
  switch (traffic) {
    case Traffic::read:
      return 8.0 * static_cast<double>(n);
    case Traffic::rewrite:
    case Traffic::copy:
      return 16.0 * static_cast<double>(n);
    case Traffic::accumulate:
      return 24.0 * static_cast<double>(n);
    case Traffic::exchange:
      return 32.0 * static_cast<double>(n);
  }
  return 0.0;
}

}  // namespace

double fused_peak(int threads) {
  return peak<true>(threads);
}

double separate_peak(int threads) {
  return peak<false>(threads);
}

double addition_latency() {
  static double latency = 0.0;
  constexpr std::size_t additions = 400000;
  for (int i = 0; latency == 0.0 || i < samples; ++i) {
    const double start = thread_seconds();
    double s = term;
    const double t = term;
    for (std::size_t k = 0; k < additions; ++k) {
      s += t;
    }
    sink = s;
    const double seconds = (thread_seconds() - start) / additions;
    latency = latency == 0.0 ? seconds : std::min(latency, seconds);
  }
  return latency;
}

double traffic_rate(Traffic traffic, std::size_t bytes) {
  static std::map<std::pair<Traffic, std::size_t>, double> known;
  double& rate = known[{traffic, bytes}];
  if (rate == 0.0) {
    const bool two = traffic != Traffic::read && traffic != Traffic::rewrite;
    const std::size_t granule = 4 * hn::Lanes(Tag());
    const std::size_t n = std::max(granule, bytes / sizeof(double) / (two ? 2 : 1) / granule * granule);
    Numbers x = some_numbers(n);
    Numbers y = two ? some_numbers(n) : Numbers(1);
    const std::size_t passes = 1 + (std::size_t{1} << 21) / n;
    for (int i = 0; i < samples; ++i) {
      const double start = thread_seconds();
      for (std::size_t k = 0; k < passes; ++k) {
        pass(traffic, x.data(), y.data(), n);
      }
      rate = std::max(rate, bytes_moved(traffic, n) * static_cast<double>(passes) / (thread_seconds() - start));
    }
  }
  return rate;
}

}  // namespace zorbench
