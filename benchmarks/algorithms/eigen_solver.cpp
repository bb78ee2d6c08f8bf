// SPDX-License-Identifier: MIT
// eaxeig, all eigenvalues and eigenvectors, one thread, beside LAPACK's packed solvers by QL iteration (dspev) and by
// divide and conquer (dspevd) and Eigen's solver for full storage. All are credited with the same 8.3·n³ operations:
// 4/3 for the reduction, 5 for the iteration at 1.7 rotation sweeps an eigenvalue, 2 for the back-transformation.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "ZORTAVEigenSolver.h"
#include "routines.h"
#include "support/blas_library.h"
#include "support/blas_types.h"
#include "support/data.h"
#include "support/eigen_peer.h"
#include "support/limits.h"

namespace zorbench {
namespace {

constexpr std::int32_t ascending = 1;

Numbers some_symmetric(std::int32_t n) {
  Numbers a = definite_full(n);
  for (std::size_t i = 0; i < size(n); ++i) {
    a[i * (size(n) + 1)] = 1.0 / (1.0 + static_cast<double>(i));
  }
  return a;
}

void measure(Report& report, std::int32_t n) {
  const Numbers full = some_symmetric(n);
  const Numbers packed = packed_upper(full, n);
  const std::int32_t lwork = 1 + 6 * n + n * n;
  const std::int32_t liwork = 3 + 5 * n;
  Numbers a = packed;
  Numbers d(size(n));
  Numbers v(full.size());
  Numbers work(size(lwork));
  std::vector<std::int32_t> iwork(size(liwork));
  std::int32_t info = 0;
  const double operations = 8.3 * n * n * n;
  Case c("eaxeig", "n=" + std::to_string(n), operations, "Gflop/s");
  c.limit(operations / separate_peak(), "separate peak");
  c.target(1.1, "dspevd");
  c.target(n <= 200 ? 2.8 : 4.0, "dspev");
  if (n >= 500) {
    c.target(1.2, "Eigen");
  }
  const auto restore = [&] { std::copy(packed.begin(), packed.end(), a.begin()); };
  c.ours(restore, [&] {
    if (eaxeig(&n, &ascending, a.data(), d.data(), v.data(), work.data(), &info) != 0) {
      std::fprintf(stderr, "eaxeig failed\n");
      std::exit(1);
    }
  });
  for (const BlasLibrary* blas : blas_libraries_for(operations)) {
    if (auto* const f = blas->find<Dspev>("dspev_")) {
      c.peer(blas->name(), "dspev", Storage::same, restore,
             [&, f] { f("V", "U", &n, a.data(), d.data(), v.data(), &n, work.data(), &info, 1, 1); });
    }
    if (auto* const f = blas->find<Dspevd>("dspevd_")) {
      c.peer(blas->name(), "dspevd", Storage::same, restore, [&, f] {
        f("V", "U", &n, a.data(), d.data(), v.data(), &n, work.data(), &lwork, iwork.data(), &liwork, &info, 1, 1);
      });
    }
  }
  c.peer("Eigen", "", Storage::other, restore, [&] { eigen::eigenvectors(n, full.data(), d.data(), v.data()); });
  report.measure(c);
}

}  // namespace

void eigen_solver(Report& report) {
  if (!report.wants("eaxeig")) {
    return;
  }
  for (const std::int32_t n : {200, 500, 1000, 1500}) {
    measure(report, n);
  }
}

}  // namespace zorbench
