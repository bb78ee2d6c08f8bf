// SPDX-License-Identifier: MIT
// eaxinv, one thread: any matrix (mode 1) beside dgetrf with dgetri, symmetric without a test (mode 2) beside dsytrf
// with dsytri, and Eigen's inverse.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "ZORTAVInversion.h"
#include "routines.h"
#include "support/blas_library.h"
#include "support/blas_types.h"
#include "support/data.h"
#include "support/eigen_peer.h"
#include "support/limits.h"

namespace zorbench {
namespace {

void measure(Report& report, std::int32_t mode, std::int32_t n) {
  const bool symmetric = mode == 2;
  const Numbers original = symmetric ? definite_full(n) : some_numbers(size(n) * size(n));
  const std::int32_t lwork = 64 * n;
  Numbers a = original;
  Numbers inverse(symmetric ? 0 : a.size());
  Numbers work(size(lwork));
  std::vector<std::int32_t> ipiv(size(n));
  std::int32_t info = 0;
  const double operations = (symmetric ? 1.0 : 2.0) * n * n * n;
  Case c("eaxinv", "mode=" + std::to_string(mode) + " n=" + std::to_string(n), operations, "Gflop/s");
  c.limit(operations / separate_peak(), "separate peak");
  const auto restore = [&] { std::copy(original.begin(), original.end(), a.begin()); };
  c.ours(restore, [&] { eaxinv(&mode, &n, &n, ipiv.data(), &info, a.data()); });
  for (const BlasLibrary* blas : blas_libraries_for(operations)) {
    auto* const dgetrf = blas->find<Dgetrf>("dgetrf_");
    auto* const dgetri = blas->find<Dgetri>("dgetri_");
    auto* const dsytrf = blas->find<Dsytrf>("dsytrf_");
    auto* const dsytri = blas->find<Dsytri>("dsytri_");
    if (dgetrf == nullptr) {
      continue;
    }
    if (symmetric) {
      c.peer(blas->name(), "dsytrf+dsytri", Storage::same, restore, [&, dsytrf, dsytri] {
        dsytrf("L", &n, a.data(), &n, ipiv.data(), work.data(), &lwork, &info, 1);
        dsytri("L", &n, a.data(), &n, ipiv.data(), work.data(), &info, 1);
      });
    } else {
      c.peer(blas->name(), "dgetrf+dgetri", Storage::same, restore, [&, dgetrf, dgetri] {
        dgetrf(&n, &n, a.data(), &n, ipiv.data(), &info);
        dgetri(&n, a.data(), &n, ipiv.data(), work.data(), &lwork, &info);
      });
    }
  }
  if (!symmetric) {
    c.peer("Eigen", "", Storage::same, restore, [&] { eigen::invert(n, a.data(), inverse.data()); });
  }
  c.target(1.1, symmetric ? "dsytrf+dsytri" : "dgetrf+dgetri");
  report.measure(c);
}

}  // namespace

void inversion(Report& report) {
  if (!report.wants("eaxinv")) {
    return;
  }
  for (const std::int32_t mode : {1, 2}) {
    for (const std::int32_t n : {500, 1000, 2000}) {
      measure(report, mode, n);
    }
  }
}

}  // namespace zorbench
