// SPDX-License-Identifier: MIT
// e_idamax and damax: contiguous vectors, one thread. The largest element is the last one. damax has no peer under its
// own name; dlange("M") would be one, but no library has more than the plain loop of the reference for it.
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
volatile double sink;

Case search_case(const char* routine, std::int32_t n) {
  const double bytes = static_cast<double>(sizeof(double)) * n;
  Case c(routine, "n=" + std::to_string(n), bytes, "GB/s");
  c.limit(bytes / traffic_rate(Traffic::read, size(n) * sizeof(double)), "cache or memory");
  c.target(1.8, "OpenBLAS");
  return c;
}

void add_peers(Case& c, const std::int32_t& n, const Numbers& x) {
  for (const BlasLibrary& blas : blas_libraries()) {
    c.peer(blas.name(), "idamax", Storage::same,
           [&, f = blas.find<Idamax>("idamax_")] { sink = f(&n, x.data(), &one); });
  }
  c.peer("Eigen", "", Storage::same, [&] { sink = eigen::greatest(n, x.data()); });
}

}  // namespace

void searches(Report& report) {
  for (const std::int32_t n : {100, 1000, 10000, 100000, 1000000, 10000000}) {
    Numbers x = some_numbers(size(n));
    x.back() = 2.0;
    if (report.wants("e_idamax")) {
      Case c = search_case("e_idamax", n);
      c.ours([&] { sink = e_idamax(&n, x.data(), &one); });
      add_peers(c, n, x);
      report.measure(c);
    }
    if (report.wants("damax")) {
      Case c = search_case("damax", n);
      c.ours([&] { sink = damax(&n, x.data(), &one); });
      add_peers(c, n, x);
      report.measure(c);
    }
  }
}

}  // namespace zorbench
