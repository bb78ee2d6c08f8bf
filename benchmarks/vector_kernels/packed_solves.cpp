// SPDX-License-Identifier: MIT
// e_dtpsv and dpptrs_2, one thread, beside the same routines and those of full storage.
#include <cstdint>
#include <string>

#include "ZORTAVPackedSolves.h"
#include "routines.h"
#include "support/blas_library.h"
#include "support/blas_types.h"
#include "support/data.h"
#include "support/limits.h"

namespace zorbench {
namespace {

constexpr std::int32_t one = 1;

// Small elements beside the diagonal keep solutions of any length in range.
Numbers tame_triangle(std::int32_t n) {
  Numbers a = definite_full(n);
  for (double& x : a) {
    x /= n;
  }
  return a;
}

void triangle(Report& report, const char* shape, std::int32_t n) {
  const Numbers full = tame_triangle(n);
  const Numbers packed = *shape == 'U' ? packed_upper(full, n) : packed_lower(full, n);
  const Numbers b(size(n), 1.0);
  Numbers x;
  const double bytes = static_cast<double>(packed.size() * sizeof(double));
  Case c("e_dtpsv", std::string(shape) + " n=" + std::to_string(n), bytes, "GB/s");
  c.limit(bytes / traffic_rate(Traffic::read, packed.size() * sizeof(double)), "cache or memory");
  c.target(1.0, "dtpsv");
  const auto restore = [&] { x = b; };
  c.ours(restore, [&, shape] { e_dtpsv(shape, shape + 1, "N", &n, packed.data(), x.data(), &one); });
  for (const BlasLibrary& blas : blas_libraries()) {
    c.peer(blas.name(), "dtpsv", Storage::same, restore, [&, shape, f = blas.find<Dtpsv>("dtpsv_")] {
      f(shape, shape + 1, "N", &n, packed.data(), x.data(), &one, 1, 1, 1);
    });
    c.peer(blas.name(), "dtrsv", Storage::other, restore, [&, shape, f = blas.find<Dtrsv>("dtrsv_")] {
      f(shape, shape + 1, "N", &n, full.data(), &n, x.data(), &one, 1, 1, 1);
    });
  }
  report.measure(c);
}

void cholesky_solve(Report& report, std::int32_t n, std::int32_t nrhs) {
  const Numbers full = tame_triangle(n);
  const Numbers packed = packed_upper(full, n);
  const Numbers rhs = some_numbers(size(n) * size(nrhs), 8);
  Numbers b;
  std::int32_t info = 0;
  const double operations = 2.0 * n * n * nrhs;
  Case c("dpptrs_2", "n=" + std::to_string(n) + " rhs=" + std::to_string(nrhs), operations, "Gflop/s");
  c.limit(operations / separate_peak(), "separate peak");
  c.target(1.0, "dpotrs");
  c.target(2.0, "dpptrs");
  const auto restore = [&] { b = rhs; };
  c.ours(restore, [&] { dpptrs_2("U", &n, &nrhs, packed.data(), b.data(), &n, &info); });
  for (const BlasLibrary* blas : blas_libraries_for(operations)) {
    if (auto* const f = blas->find<Dpptrs>("dpptrs_")) {
      c.peer(blas->name(), "dpptrs", Storage::same, restore,
             [&, f] { f("U", &n, &nrhs, packed.data(), b.data(), &n, &info, 1); });
    }
    if (auto* const f = blas->find<Dpotrs>("dpotrs_")) {
      c.peer(blas->name(), "dpotrs", Storage::other, restore,
             [&, f] { f("U", &n, &nrhs, full.data(), &n, b.data(), &n, &info, 1); });
    }
  }
  report.measure(c);
}

}  // namespace

void packed_solves(Report& report) {
  for (const char* shape : {"UN", "UT", "LN", "LT"}) {
    for (const std::int32_t n : {100, 300, 1000, 3000}) {
      if (report.wants("e_dtpsv")) {
        triangle(report, shape, n);
      }
    }
  }
  for (const std::int32_t n : {100, 300, 1000, 3000}) {
    if (report.wants("dpptrs_2")) {
      cholesky_solve(report, n, 32);
    }
  }
}

}  // namespace zorbench
