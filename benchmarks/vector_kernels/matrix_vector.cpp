// SPDX-License-Identifier: MIT
// eagemv: square matrices, unit increments, one thread.
#include <cstdint>
#include <string>

#include "ZORTAVMatrixVectorProduct.h"
#include "routines.h"
#include "support/blas_library.h"
#include "support/blas_types.h"
#include "support/data.h"
#include "support/eigen_peer.h"
#include "support/limits.h"

namespace zorbench {
namespace {

void measure(Report& report, const char* trans, std::int32_t n, bool cold) {
  const Numbers a = some_numbers(size(n) * size(n));
  const Numbers x = some_numbers(size(n), 8);
  Numbers y = some_numbers(size(n), 9);
  const double alpha = 1.5;
  const double beta = 0.5;
  const std::int32_t one = 1;
  const double bytes = static_cast<double>(a.size() * sizeof(double));
  Case c("eagemv", std::string(trans) + " n=" + std::to_string(n), bytes, "GB/s");
  if (cold) {
    c.cold();
  } else {
    c.limit(bytes / traffic_rate(Traffic::read, a.size() * sizeof(double)), "cache or memory");
  }
  c.target(*trans == 'N' ? 0.95 : 0.9, "best");
  c.ours([&, trans] { eagemv(trans, &n, &n, &alpha, a.data(), &n, x.data(), &one, &beta, y.data(), &one); });
  for (const BlasLibrary& blas : blas_libraries()) {
    c.peer(blas.name(), "dgemv", Storage::same, [&, trans, f = blas.find<Dgemv>("dgemv_")] {
      f(trans, &n, &n, &alpha, a.data(), &n, x.data(), &one, &beta, y.data(), &one, 1);
    });
  }
  c.peer("Eigen", "", Storage::same,
         [&, trans] { eigen::multiply(*trans == 'T', n, alpha, a.data(), x.data(), beta, y.data()); });
  report.measure(c);
}

}  // namespace

void matrix_vector(Report& report) {
  if (!report.wants("eagemv")) {
    return;
  }
  for (const char* trans : {"N", "T"}) {
    for (const std::int32_t n : {256, 512, 1000, 2000, 4000}) {
      measure(report, trans, n, false);
    }
    measure(report, trans, 500, true);
  }
}

}  // namespace zorbench
