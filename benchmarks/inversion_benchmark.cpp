// SPDX-License-Identifier: MIT
// Inversion in place, one thread, beside OpenBLAS's dgetrf with dgetri (mode 1) and dsytrf with dsytri (modes 2 and 3).
// Operations (multiplications and additions) are those of the elimination: 2n³, on one triangle n³.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "ZORTAVInstructionSet.h"
#include "ZORTAVInversion.h"
#include "support/compare.h"
#include "support/openblas.h"

namespace {

using Getrf = void(const int32_t*, const int32_t*, double*, const int32_t*, int32_t*, int32_t*);
using Getri = void(const int32_t*, double*, const int32_t*, const int32_t*, double*, const int32_t*, int32_t*);
using Sytrf = void(const char*, const int32_t*, double*, const int32_t*, int32_t*, double*, const int32_t*, int32_t*);
using Sytri = void(const char*, const int32_t*, double*, const int32_t*, const int32_t*, double*, int32_t*);

// Symmetric and diagonally dominant; for mode 1 a general one.
std::vector<double> matrix(std::size_t n, bool symmetric) {
  std::mt19937_64 engine(7);
  std::vector<double> a(n * n);
  for (double& x : a) {
    x = static_cast<double>(engine() >> 11) * 0x1p-52 - 1;
  }
  for (std::size_t j = 0; symmetric && j < n; ++j) {
    a[j + j * n] = static_cast<double>(n);
    for (std::size_t i = 0; i < j; ++i) {
      a[j + i * n] = a[i + j * n];
    }
  }
  return a;
}

void bench_eaxinv(benchmark::State& state) {
  const auto mode = static_cast<int32_t>(state.range(0));
  const auto n = static_cast<int32_t>(state.range(1));
  const auto order = static_cast<std::size_t>(n);
  const std::vector<double> given = matrix(order, mode != 1);
  std::vector<double> a = given;
  std::vector<int32_t> ipiv(order);
  constexpr int32_t peer_block = 64;
  const int32_t work_length = peer_block * n;
  std::vector<double> work(static_cast<std::size_t>(work_length));
  const zorbench::OpenBlas& blas = zorbench::OpenBlas::instance();
  auto* const getrf = blas.function<Getrf>("dgetrf_");
  auto* const getri = blas.function<Getri>("dgetri_");
  auto* const sytrf = blas.function<Sytrf>("dsytrf_");
  auto* const sytri = blas.function<Sytri>("dsytri_");
  zorbench::compare(
      state, (mode == 1 ? 2.0 : 1.0) * n * n * n, [&] { std::memcpy(a.data(), given.data(), a.size() * sizeof a[0]); },
      [&] {
        int32_t ierr = 0;
        eaxinv(&mode, &n, &n, ipiv.data(), &ierr, a.data());
      },
      [&] {
        int32_t info = 0;
        if (mode == 1) {
          getrf(&n, &n, a.data(), &n, ipiv.data(), &info);
          getri(&n, a.data(), &n, ipiv.data(), work.data(), &work_length, &info);
        } else {
          sytrf("U", &n, a.data(), &n, ipiv.data(), work.data(), &work_length, &info);
          sytri("U", &n, a.data(), &n, ipiv.data(), work.data(), &info);
        }
      });
}

void orders(benchmark::internal::Benchmark* b) {
  for (const int mode : {1, 2, 3}) {
    for (const int n : {20, 50, 100, 200, 500, 512, 1000, 1500, 2000}) {
      b->Args({mode, n});
    }
  }
  b->UseManualTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK(bench_eaxinv)->Apply(orders);

}  // namespace

int main(int argc, char** argv) {
  const zorbench::OpenBlas& blas = zorbench::OpenBlas::instance();
  blas.set_threads(1);
  int32_t active = 0;
  int32_t highest = 0;
  int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  benchmark::AddCustomContext("instruction set", ehisanm(&active));
  benchmark::AddCustomContext("OpenBLAS kernels", blas.core());
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
