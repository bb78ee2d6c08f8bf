// SPDX-License-Identifier: MIT
// Cholesky factorization and front elimination, one thread, beside OpenBLAS's dpotrf (full storage) and dpptrf
// (packed). Counters are useful operations (multiplications and additions) per second; restoring the matrix is not
// timed.
//
// The environment variables of OpenBLAS are read when it is loaded: run with `env -u OPENBLAS_NUM_THREADS -u
// OPENBLAS_CORETYPE`; the program stops when one is set.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
#include <vector>

#include "ZORTAVFactorization.h"
#include "ZORTAVInstructionSet.h"

extern "C" {
void dpotrf_(const char* uplo, const int32_t* n, double* a, const int32_t* lda, int32_t* info);
void dpptrf_(const char* uplo, const int32_t* n, double* ap, int32_t* info);
void openblas_set_num_threads(int threads);
}

namespace {

// Diagonally dominant triangle packed by rows (or by columns: the diagonal's places are given).
template <class Diagonal>
std::vector<double> triangle(std::size_t n, Diagonal diagonal) {
  std::mt19937_64 engine(7);
  std::vector<double> a(n * (n + 1) / 2);
  for (double& x : a) {
    x = static_cast<double>(engine() >> 11) * 0x1p-52 - 1;
  }
  for (std::size_t i = 0; i < n; ++i) {
    a[diagonal(i)] = static_cast<double>(n);
  }
  return a;
}

std::vector<double> triangle_by_rows(std::size_t n) {
  return triangle(n, [](std::size_t i) { return i * (i + 3) / 2; });
}

std::vector<double> triangle_by_columns(std::size_t n) {
  return triangle(n, [n](std::size_t j) { return j * n - j * (j + 1) / 2 + j; });
}

// Processor time of this thread: what other programs do on the machine counts less.
double thread_seconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

template <class Run>
void measure(benchmark::State& state, const std::vector<double>& matrix, double operations, Run run) {
  std::vector<double> a = matrix;
  for (auto _ : state) {
    std::memcpy(a.data(), matrix.data(), matrix.size() * sizeof(double));
    const double start = thread_seconds();
    const int32_t failed = run(a.data());
    const double end = thread_seconds();
    if (failed != 0) {
      state.SkipWithError("the factorization failed");
      return;
    }
    state.SetIterationTime(end - start);
  }
  state.counters["Flop/s"] =
      benchmark::Counter(operations * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

double cholesky_operations(double n) {
  return n * n * n / 3 + n * n / 2;
}

void bench_eaxfch2(benchmark::State& state) {
  const auto n = static_cast<int32_t>(state.range(0));
  measure(state, triangle_by_rows(static_cast<std::size_t>(n)), cholesky_operations(n), [n](double* a) {
    const int32_t one = 1;
    const double tol = 0;
    int32_t ierr = 0;
    double piv = 0;
    eaxfch2(&n, &one, &n, &tol, a, &ierr, &piv);
    return ierr;
  });
}

void bench_dpptrf(benchmark::State& state) {
  const auto n = static_cast<int32_t>(state.range(0));
  measure(state, triangle_by_rows(static_cast<std::size_t>(n)), cholesky_operations(n), [n](double* a) {
    int32_t info = 0;
    dpptrf_("U", &n, a, &info);
    return info;
  });
}

void bench_dpotrf(benchmark::State& state) {
  const auto n = static_cast<int32_t>(state.range(0));
  const auto order = static_cast<std::size_t>(n);
  std::mt19937_64 engine(7);
  std::vector<double> full(order * order);
  for (double& x : full) {
    x = static_cast<double>(engine() >> 11) * 0x1p-52 - 1;
  }
  for (std::size_t i = 0; i < order; ++i) {
    full[i * (order + 1)] = n;
  }
  measure(state, full, cholesky_operations(n), [n](double* a) {
    int32_t info = 0;
    dpotrf_("L", &n, a, &n, &info);
    return info;
  });
}

void bench_easlff_nt(benchmark::State& state) {
  const auto n = static_cast<int32_t>(state.range(0));
  const auto m = static_cast<int32_t>(state.range(1));
  const auto rows = static_cast<double>(n);
  double operations = 0;
  for (int32_t k = 1; k <= m; ++k) {
    operations += (rows - k) * (rows - k + 2);
  }
  const std::vector<double> d0(static_cast<std::size_t>(n), rows);
  measure(state, triangle_by_columns(static_cast<std::size_t>(n)), operations, [&](double* a) {
    const double tol = 1e-12;
    double rmin = 1e300;
    int32_t neq = 0;
    int32_t npiv = 0;
    int32_t istat = 0;
    float flop1 = 0;
    float flop2 = 0;
    return easlff_nt(&n, &m, a, &rmin, d0.data(), &tol, &tol, &neq, &npiv, &flop1, &flop2, &istat);
  });
}

void orders(benchmark::internal::Benchmark* b) {
  for (const int n : {60, 100, 200, 500, 1000, 2000, 4000}) {
    b->Arg(n);
  }
  b->UseManualTime()->Unit(benchmark::kMicrosecond);
}

void fronts(benchmark::internal::Benchmark* b) {
  for (const int n : {100, 300, 1000, 2000}) {
    for (const int m : {n / 10, n / 3, n}) {
      b->Args({n, m});
    }
  }
  b->Args({1000, 3})->Args({1000, 50})->Args({4000, 4000});
  b->UseManualTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK(bench_eaxfch2)->Apply(orders);
BENCHMARK(bench_dpptrf)->Apply(orders);
BENCHMARK(bench_dpotrf)->Apply(orders);
BENCHMARK(bench_easlff_nt)->Apply(fronts);

}  // namespace

int main(int argc, char** argv) {
  for (const char* name : {"OPENBLAS_NUM_THREADS", "OPENBLAS_CORETYPE"}) {
    if (std::getenv(name) != nullptr) {
      std::fprintf(stderr, "unset %s: it changes what OpenBLAS runs\n", name);
      return 1;
    }
  }
  openblas_set_num_threads(1);
  int32_t active = 0;
  int32_t highest = 0;
  int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  benchmark::AddCustomContext("instruction set", ehisanm(&active));
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
