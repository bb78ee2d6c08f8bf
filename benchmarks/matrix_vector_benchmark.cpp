// SPDX-License-Identifier: MIT
// eagemv beside OpenBLAS's and the reference dgemv on one thread. Arguments: n (square), transposed, increment of x
// and y. Counters: GB of A per second, and each peer's time divided by ours, above 1 when ours is faster; medians.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "ZORTAVMathKernel.h"
#include "support/compare.h"
#include "support/openblas.h"
#include "support/reference_blas.h"

namespace {

using Dgemv = void(const char*, const int32_t*, const int32_t*, const double*, const double*, const int32_t*,
                   const double*, const int32_t*, const double*, double*, const int32_t*, std::int64_t);

// Processor time: what other processes do to the clock is not ours.
double processor_seconds() {
  timespec t{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

void matrix_vector(benchmark::State& state) {
  const auto n = static_cast<int32_t>(state.range(0));
  const char* const trans = state.range(1) == 0 ? "N" : "T";
  const auto inc = static_cast<int32_t>(state.range(2));
  const zorbench::OpenBlas& blas = zorbench::OpenBlas::instance();
  blas.set_threads(1);
  const std::array<Dgemv*, 3> routines = {eagemv, blas.function<Dgemv>("dgemv_"),
                                          zorbench::reference_blas<Dgemv>("dgemv_")};
  const auto count = static_cast<std::size_t>(n);
  std::vector<double> a(count * count);
  std::vector<double> x(count * static_cast<std::size_t>(inc));
  std::vector<double> y(count * static_cast<std::size_t>(inc));
  for (std::size_t i = 0; i < a.size(); ++i) {
    a[i] = static_cast<double>(i % 17) - 8.0;
  }
  for (std::size_t i = 0; i < x.size(); ++i) {
    x[i] = static_cast<double>(i % 23) - 11.0;
  }
  const double alpha = 1.5;
  const double beta = 0.5;
  const double bytes = static_cast<double>(a.size() * sizeof(double));
  const int calls = std::max(1, static_cast<int>(4e6 / bytes));  // so that the clock's own time does not show
  std::array<std::vector<double>, 3> times;
  for (auto _ : state) {
    for (std::size_t k = 0; k < routines.size(); ++k) {
      const double start = processor_seconds();
      for (int call = 0; call < calls; ++call) {
        routines[k](trans, &n, &n, &alpha, a.data(), &n, x.data(), &inc, &beta, y.data(), &inc, 1);
      }
      times[k].push_back((processor_seconds() - start) / calls);
    }
    state.SetIterationTime(times[0].back() * calls);
  }
  const auto ratio = [&](std::size_t peer) { return zorbench::median(times[peer]) / zorbench::median(times[0]); };
  state.counters["ours_GBs"] = bytes / zorbench::median(times[0]) * 1e-9;
  state.counters["over_OpenBLAS"] = ratio(1);
  state.counters["over_reference"] = ratio(2);
  int32_t active = 0;
  int32_t highest = 0;
  int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  state.SetLabel(std::string(trans) + ", " + ehisanm(&active) + " beside " + blas.core());
}

BENCHMARK(matrix_vector)
    ->ArgNames({"n", "transposed", "increment"})
    ->ArgsProduct({{100, 1000, 1003, 4000}, {0, 1}, {1}})
    ->ArgsProduct({{1000}, {0, 1}, {2}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
