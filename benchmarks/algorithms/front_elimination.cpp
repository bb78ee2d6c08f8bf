// SPDX-License-Identifier: MIT
// easlff_nt, one thread: whole fronts beside dpotrf (full storage) and dsptrf (packed, as ours); parts of fronts beside
// what full storage takes three routines for: dpotrf of the pivots, dtrsm of the rows below, dsyrk of the rest.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "ZORTAVFactorization.h"
#include "routines.h"
#include "support/blas_library.h"
#include "support/blas_types.h"
#include "support/data.h"
#include "support/limits.h"

namespace zorbench {
namespace {

double operations_of(std::int32_t n, std::int32_t m) {
  double operations = 0.0;
  for (std::int32_t k = 1; k <= m; ++k) {
    operations += static_cast<double>(n - k) * (n - k + 2);
  }
  return operations;
}

struct Front {
  std::int32_t n;
  std::int32_t m;
  Numbers full;
  Numbers packed;
  Numbers a;
  Numbers d0;

  Front(std::int32_t order, std::int32_t pivots)
      : n(order), m(pivots), full(definite_full(n)), packed(packed_lower(full, n)), a(full.size()), d0(size(n), n) {}
  void restore_packed() { std::copy(packed.begin(), packed.end(), a.begin()); }
  void restore_full() { std::copy(full.begin(), full.end(), a.begin()); }

  void eliminate() {
    const double tol = 1e-12;
    double rmin = 1e300;
    std::int32_t neq = 0;
    std::int32_t npiv = 0;
    std::int32_t istat = 0;
    float flop1 = 0.0F;
    float flop2 = 0.0F;
    if (easlff_nt(&n, &m, a.data(), &rmin, d0.data(), &tol, &tol, &neq, &npiv, &flop1, &flop2, &istat) != 0) {
      std::fprintf(stderr, "easlff_nt refused a pivot\n");
      std::exit(1);
    }
  }
};

Case front_case(const Front& front, const std::string& size) {
  const double operations = operations_of(front.n, front.m);
  Case c("easlff_nt", size, operations, "Gflop/s");
  c.limit(operations / separate_peak(), "separate peak");
  return c;
}

void whole(Report& report, std::int32_t n, double of_full, double of_packed) {
  Front front(n, n);
  std::int32_t info = 0;
  std::vector<std::int32_t> ipiv(size(n));
  Case c = front_case(front, "n=m=" + std::to_string(n));
  c.target(of_full, "dpotrf");
  c.target(of_packed, "dsptrf");
  const auto restore_packed = [&] { front.restore_packed(); };
  const auto restore_full = [&] { front.restore_full(); };
  c.ours(restore_packed, [&] { front.eliminate(); });
  for (const BlasLibrary* blas : blas_libraries_for(operations_of(n, n))) {
    auto* const dsptrf = blas->find<Dsptrf>("dsptrf_");
    if (dsptrf != nullptr && (n <= 2000 || !report.quick())) {
      c.peer(blas->name(), "dsptrf", Storage::same, restore_packed,
             [&, dsptrf] { dsptrf("L", &n, front.a.data(), ipiv.data(), &info, 1); });
    }
    if (auto* const dpotrf = blas->find<Dpotrf>("dpotrf_")) {
      c.peer(blas->name(), "dpotrf", Storage::other, restore_full,
             [&, dpotrf] { dpotrf("L", &n, front.a.data(), &n, &info, 1); });
    }
  }
  report.measure(c);
}

void part(Report& report, std::int32_t n, std::int32_t m, double of_full) {
  Front front(n, m);
  std::int32_t info = 0;
  Case c = front_case(front, "n=" + std::to_string(n) + " m=" + std::to_string(m));
  c.target(of_full, "dpotrf+dtrsm+dsyrk");
  c.ours([&] { front.restore_packed(); }, [&] { front.eliminate(); });
  for (const BlasLibrary* blas : blas_libraries_for(operations_of(n, m))) {
    auto* const dpotrf = blas->find<Dpotrf>("dpotrf_");
    auto* const dtrsm = blas->find<Dtrsm>("dtrsm_");
    auto* const dsyrk = blas->find<Dsyrk>("dsyrk_");
    if (dpotrf == nullptr) {
      continue;
    }
    c.peer(
        blas->name(), "dpotrf+dtrsm+dsyrk", Storage::other, [&] { front.restore_full(); },
        [&, dpotrf, dtrsm, dsyrk] {
          const double one = 1.0;
          const double minus_one = -1.0;
          const std::int32_t rest = n - m;
          double* const below = front.a.data() + m;
          double* const behind = below + size(n) * size(m);
          dpotrf("L", &m, front.a.data(), &n, &info, 1);
          dtrsm("R", "L", "T", "N", &rest, &m, &one, front.a.data(), &n, below, &n, 1, 1, 1, 1);
          dsyrk("L", "N", &rest, &m, &minus_one, below, &n, &one, behind, &n, 1, 1);
        });
  }
  report.measure(c);
}

}  // namespace

void front_elimination(Report& report) {
  if (!report.wants("easlff_nt")) {
    return;
  }
  whole(report, 100, 1.6, 3.5);
  whole(report, 500, 1.4, 4.0);
  whole(report, 1000, 1.3, 4.0);
  whole(report, 2000, 1.2, 4.0);
  whole(report, 4000, 1.0, 4.0);
  part(report, 2000, 200, 1.0);
  part(report, 1000, 24, 0.9);
  part(report, 2000, 6, 0.8);
}

}  // namespace zorbench
