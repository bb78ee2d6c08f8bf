// SPDX-License-Identifier: MIT
// eaxfch2, one thread, beside the packed (dpptrf) and the full-storage (dpotrf) factorization.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "ZORTAVFactorization.h"
#include "routines.h"
#include "support/blas_library.h"
#include "support/blas_types.h"
#include "support/data.h"
#include "support/eigen_peer.h"
#include "support/limits.h"

namespace zorbench {
namespace {

void measure(Report& report, std::int32_t n, double of_full) {
  const Numbers full = definite_full(n);
  const Numbers packed = packed_upper(full, n);
  Numbers a(full.size());
  std::int32_t info = 0;
  const double operations = 1.0 / 3.0 * n * n * n;
  Case c("eaxfch2", "n=" + std::to_string(n), operations, "Gflop/s");
  c.limit(operations / separate_peak(), "separate peak");
  c.target(of_full, "dpotrf");
  c.target(3.0, "dpptrf");
  const auto restore_packed = [&] { std::copy(packed.begin(), packed.end(), a.begin()); };
  const auto restore_full = [&] { std::copy(full.begin(), full.end(), a.begin()); };
  c.ours(restore_packed, [&] {
    const std::int32_t one = 1;
    const double tol = 0.0;
    double piv = 0.0;
    eaxfch2(&n, &one, &n, &tol, a.data(), &info, &piv);
    if (info != 0) {
      std::fprintf(stderr, "eaxfch2 failed\n");
      std::exit(1);
    }
  });
  for (const BlasLibrary* blas : blas_libraries_for(operations)) {
    if (auto* const f = blas->find<Dpptrf>("dpptrf_")) {
      c.peer(blas->name(), "dpptrf", Storage::same, restore_packed, [&, f] { f("U", &n, a.data(), &info, 1); });
    }
    if (auto* const f = blas->find<Dpotrf>("dpotrf_")) {
      c.peer(blas->name(), "dpotrf", Storage::other, restore_full, [&, f] { f("L", &n, a.data(), &n, &info, 1); });
    }
  }
  c.peer("Eigen", "LLT", Storage::other, restore_full, [&] { eigen::cholesky(n, a.data()); });
  report.measure(c);
}

}  // namespace

void cholesky(Report& report) {
  if (!report.wants("eaxfch2")) {
    return;
  }
  for (const auto& [n, of_full] :
       {std::pair{100, 1.6}, std::pair{500, 1.6}, std::pair{1000, 1.3}, std::pair{2000, 1.1}, std::pair{4000, 0.9}}) {
    measure(report, n, of_full);
  }
}

}  // namespace zorbench
