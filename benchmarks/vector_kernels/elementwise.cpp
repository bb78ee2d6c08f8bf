// SPDX-License-Identifier: MIT
// e_daxpy, e_dscal, e_dcopy, e_dswap: contiguous vectors, one thread.
#include <cstdint>
#include <string>

#include "ZORTAVVectorKernels.h"
#include "routines.h"
#include "support/blas_library.h"
#include "support/blas_types.h"
#include "support/data.h"
#include "support/eigen_peer.h"
#include "support/limits.h"

namespace zorbench {
namespace {

constexpr std::int32_t one = 1;

Case vector_case(const char* routine, std::int32_t n, Traffic traffic, double moved) {
  Case c(routine, "n=" + std::to_string(n), moved * n * sizeof(double), "GB/s");
  const double vectors = traffic == Traffic::rewrite ? 1.0 : 2.0;
  const double rate = traffic_rate(traffic, static_cast<std::size_t>(vectors * n) * sizeof(double));
  c.limit(moved * n * sizeof(double) / rate, "cache or memory");
  c.target(1.0, "best");
  return c;
}

void daxpy(Report& report, std::int32_t n) {
  const Numbers x = some_numbers(size(n));
  Numbers y = some_numbers(size(n), 8);
  const double alpha = 0.5;
  Case c = vector_case("e_daxpy", n, Traffic::accumulate, 3.0);
  c.ours([&] { e_daxpy(&n, &alpha, x.data(), &one, y.data(), &one); });
  for (const BlasLibrary& blas : blas_libraries()) {
    c.peer(blas.name(), "daxpy", Storage::same,
           [&, f = blas.find<Daxpy>("daxpy_")] { f(&n, &alpha, x.data(), &one, y.data(), &one); });
  }
  c.peer("Eigen", "", Storage::same, [&] { eigen::axpy(n, alpha, x.data(), y.data()); });
  report.measure(c);
}

void dscal(Report& report, std::int32_t n) {
  Numbers x = some_numbers(size(n));
  const double alpha = -1.0;  // so that repeated calls stay in range
  Case c = vector_case("e_dscal", n, Traffic::rewrite, 2.0);
  c.ours([&] { e_dscal(&n, &alpha, x.data(), &one); });
  for (const BlasLibrary& blas : blas_libraries()) {
    c.peer(blas.name(), "dscal", Storage::same, [&, f = blas.find<Dscal>("dscal_")] { f(&n, &alpha, x.data(), &one); });
  }
  c.peer("Eigen", "", Storage::same, [&] { eigen::scale(n, alpha, x.data()); });
  report.measure(c);
}

void dcopy(Report& report, std::int32_t n) {
  const Numbers x = some_numbers(size(n));
  Numbers y(size(n));
  Case c = vector_case("e_dcopy", n, Traffic::copy, 2.0);
  c.ours([&] { e_dcopy(&n, x.data(), &one, y.data(), &one); });
  for (const BlasLibrary& blas : blas_libraries()) {
    c.peer(blas.name(), "dcopy", Storage::same,
           [&, f = blas.find<Dcopy>("dcopy_")] { f(&n, x.data(), &one, y.data(), &one); });
  }
  c.peer("Eigen", "", Storage::same, [&] { eigen::copy(n, x.data(), y.data()); });
  report.measure(c);
}

void dswap(Report& report, std::int32_t n) {
  Numbers x = some_numbers(size(n));
  Numbers y = some_numbers(size(n), 8);
  Case c = vector_case("e_dswap", n, Traffic::exchange, 4.0);
  c.ours([&] { e_dswap(&n, x.data(), &one, y.data(), &one); });
  for (const BlasLibrary& blas : blas_libraries()) {
    c.peer(blas.name(), "dswap", Storage::same,
           [&, f = blas.find<Dswap>("dswap_")] { f(&n, x.data(), &one, y.data(), &one); });
  }
  c.peer("Eigen", "", Storage::same, [&] { eigen::exchange(n, x.data(), y.data()); });
  report.measure(c);
}

}  // namespace

void elementwise(Report& report) {
  const std::pair<const char*, void (*)(Report&, std::int32_t)> routines[] = {
      {"e_daxpy", daxpy}, {"e_dscal", dscal}, {"e_dcopy", dcopy}, {"e_dswap", dswap}};
  for (const auto& [name, routine] : routines) {
    for (const std::int32_t n : {100, 1000, 10000, 100000, 1000000, 10000000}) {
      if (report.wants(name)) {
        routine(report, n);
      }
    }
  }
}

}  // namespace zorbench
