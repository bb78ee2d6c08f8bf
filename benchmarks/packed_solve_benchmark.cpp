// SPDX-License-Identifier: MIT
// The packed solves, one thread, beside the routines of the same name in the reference LAPACK and in OpenBLAS.
// e_dtpsv: n, case (0 UN, 1 UT, 2 LN, 3 LT: triangle and op), peer. dpptrs_2: n, right-hand sides, peer (0 the
// reference, 1 OpenBLAS).
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "ZORTAVMathKernel.h"
#include "support/compare.h"
#include "support/openblas.h"
#include "support/reference_lapack.h"

namespace {

using Dtpsv = void(const char*, const char*, const char*, const int32_t*, const double*, double*, const int32_t*,
                   std::size_t, std::size_t, std::size_t);
using Dpptrs = void(const char*, const int32_t*, const int32_t*, const double*, double*, const int32_t*, int32_t*,
                    std::size_t);

enum Peer : std::int64_t { reference_lapack, openblas };

template <class Function>
Function* peer(std::int64_t which, const char* name) {
  if (which == reference_lapack) {
    return zorbench::ReferenceLapack::instance().function<Function>(name);
  }
  const zorbench::OpenBlas& blas = zorbench::OpenBlas::instance();
  blas.set_threads(1);
  return blas.function<Function>(name);
}

std::string label(const std::string& what, std::int64_t which) {
  int32_t active = 0;
  int32_t highest = 0;
  int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  const std::string other = which == reference_lapack ? "the reference" : zorbench::OpenBlas::instance().core();
  return what + ", " + ehisanm(&active) + " beside " + other;
}

// Small elements and a diagonal that keeps solutions of any length in range.
std::vector<double> triangle(std::size_t n, bool upper) {
  std::mt19937_64 engine(7);
  std::vector<double> ap(n * (n + 1) / 2);
  for (double& x : ap) {
    x = (static_cast<double>(engine() >> 11) * 0x1p-52 - 1) / static_cast<double>(n);
  }
  for (std::size_t j = 0; j < n; ++j) {
    ap[upper ? j * (j + 3) / 2 : j * (2 * n - j + 1) / 2] = 1.5;
  }
  return ap;
}

void packed_triangle(benchmark::State& state) {
  const auto n = static_cast<int32_t>(state.range(0));
  static constexpr const char* cases[] = {"UN", "UT", "LN", "LT"};
  const char* const shape = cases[state.range(1)];
  Dtpsv* const dtpsv = peer<Dtpsv>(state.range(2), "dtpsv_");
  const auto order = static_cast<std::size_t>(n);
  const std::vector<double> ap = triangle(order, *shape == 'U');
  const std::vector<double> b(order, 1.0);
  std::vector<double> x;
  const int32_t one = 1;
  zorbench::compare(
      state, 1.0 * n * n, [&] { x = b; }, [&] { e_dtpsv(shape, shape + 1, "N", &n, ap.data(), x.data(), &one); },
      [&] { dtpsv(shape, shape + 1, "N", &n, ap.data(), x.data(), &one, 1, 1, 1); });
  state.SetLabel(label(shape, state.range(2)));
}

void packed_cholesky(benchmark::State& state) {
  const auto n = static_cast<int32_t>(state.range(0));
  const auto nrhs = static_cast<int32_t>(state.range(1));
  Dpptrs* const dpptrs = peer<Dpptrs>(state.range(2), "dpptrs_");
  const auto order = static_cast<std::size_t>(n);
  const std::vector<double> ap = triangle(order, true);
  const std::vector<double> rhs(order * static_cast<std::size_t>(nrhs), 1.0);
  std::vector<double> b;
  int32_t info = 0;
  zorbench::compare(
      state, 2.0 * n * n * nrhs, [&] { b = rhs; }, [&] { dpptrs_2("U", &n, &nrhs, ap.data(), b.data(), &n, &info); },
      [&] { dpptrs("U", &n, &nrhs, ap.data(), b.data(), &n, &info, 1); });
  state.SetLabel(label(std::to_string(nrhs), state.range(2)));
}

BENCHMARK(packed_triangle)
    ->ArgNames({"n", "case", "peer"})
    ->ArgsProduct({{30, 100, 300, 1000, 3000}, {0, 1, 2, 3}, {reference_lapack, openblas}})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

BENCHMARK(packed_cholesky)
    ->ArgNames({"n", "nrhs", "peer"})
    ->ArgsProduct({{30, 100, 300, 1000, 3000}, {1, 32}, {reference_lapack, openblas}})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
