// SPDX-License-Identifier: MIT
// eagemm beside OpenBLAS's dgemm. Arguments: n (square), threads, operands (0 NN, 1 NT, 2 TN, 3 TT).
#include <omp.h>

#include <cstdint>
#include <vector>

#include "ZORTAVMathKernel.h"
#include "support/compare.h"
#include "support/openblas.h"

namespace {

using Dgemm = void(const char*, const char*, const int32_t*, const int32_t*, const int32_t*, const double*,
                   const double*, const int32_t*, const double*, const int32_t*, const double*, double*, const int32_t*,
                   std::size_t, std::size_t);

void matrix_product(benchmark::State& state) {
  const auto n = static_cast<int32_t>(state.range(0));
  const auto threads = static_cast<int>(state.range(1));
  static constexpr const char* operands[] = {"NN", "NT", "TN", "TT"};
  const char* const op = operands[state.range(2)];
  const zorbench::OpenBlas& blas = zorbench::OpenBlas::instance();
  Dgemm* const dgemm = blas.function<Dgemm>("dgemm_");
  blas.set_threads(threads);
  omp_set_num_threads(threads);
  const auto size = static_cast<std::size_t>(n) * static_cast<std::size_t>(n);
  std::vector<double> a(size);
  std::vector<double> b(size);
  std::vector<double> c(size);
  for (std::size_t i = 0; i < size; ++i) {
    a[i] = static_cast<double>(i % 17) - 8.0;
    b[i] = static_cast<double>(i % 23) - 11.0;
  }
  const double alpha = 1.5;
  const double beta = 0.0;
  zorbench::compare(
      state, 2.0 * n * n * n, [] {},
      [&] { eagemm(op, op + 1, &n, &n, &n, &alpha, a.data(), &n, b.data(), &n, &beta, c.data(), &n); },
      [&] { dgemm(op, op + 1, &n, &n, &n, &alpha, a.data(), &n, b.data(), &n, &beta, c.data(), &n, 1, 1); });
  int32_t active = 0;
  int32_t highest = 0;
  int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  state.SetLabel(std::string(op) + ", " + ehisanm(&active) + " beside " + blas.core());
}

BENCHMARK(matrix_product)
    ->ArgNames({"n", "threads", "operands"})
    ->ArgsProduct({{248, 500, 1000, 2000, 3000}, {1, 2}, {0}})
    ->ArgsProduct({{1000}, {1}, {1, 2, 3}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);

}  // namespace

int main(int argc, char** argv) {
  int32_t decision = 0;
  ehaldb(&decision);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
