// SPDX-License-Identifier: MIT
// e_dasum, e_ddoti, e_dnrm2: contiguous vectors, one thread. Their orders of addition are fixed. The four running sums
// of e_dasum and e_ddoti take two additions each for every eight elements, one after the other; e_dnrm2 has one sum.
// No order-keeping routine can be faster than its chain of additions or than the memory.
#include <algorithm>
#include <cstdint>
#include <numeric>
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

Case sum_case(const char* routine, std::int32_t n, double bytes, double additions_an_element) {
  Case c(routine, "n=" + std::to_string(n), bytes, "GB/s");
  const double chain = additions_an_element * n * addition_latency();
  const double memory = bytes / traffic_rate(Traffic::read, static_cast<std::size_t>(bytes));
  c.limit(std::max(chain, memory), chain > memory ? "addition chain" : "cache or memory");
  c.target(0.95, "limit");
  return c;
}

void dasum(Report& report, std::int32_t n, const Numbers& x) {
  Case c = sum_case("e_dasum", n, 8.0 * n, 0.25);
  c.ours([&] { sink = e_dasum(&n, x.data(), &one); });
  for (const BlasLibrary& blas : blas_libraries()) {
    c.peer(blas.name(), "dasum", Storage::same, [&, f = blas.find<Norm>("dasum_")] { sink = f(&n, x.data(), &one); });
  }
  c.peer("Eigen", "", Storage::same, [&] { sink = eigen::norm1(n, x.data()); });
  report.measure(c);
}

// The peer is the plain loop that the published routine consists of, as the compiler makes it.
void ddoti(Report& report, std::int32_t n, const Numbers& x) {
  const Numbers y = some_numbers(2 * size(n), 8);
  std::vector<std::int32_t> index(size(n));
  for (std::size_t i = 0; i < index.size(); ++i) {
    index[i] = static_cast<std::int32_t>(2 * i + 1);
  }
  Case c = sum_case("e_ddoti", n, 28.0 * n, 0.25);  // 8 of x, 4 of the index, and every line of y
  c.ours([&] { sink = e_ddoti(&n, x.data(), index.data(), y.data()); });
  c.peer("plain loop", "", Storage::same, [&] {
    double sum = 0.0;
    for (std::size_t i = 0; i < index.size(); ++i) {
      sum += x[i] * y[size(index[i] - 1)];
    }
    sink = sum;
  });
  report.measure(c);
}

void dnrm2(Report& report, std::int32_t n, const Numbers& x) {
  Case c = sum_case("e_dnrm2", n, 8.0 * n, 1.0);
  c.ours([&] { sink = e_dnrm2(&n, x.data(), &one); });
  for (const BlasLibrary& blas : blas_libraries()) {
    c.peer(blas.name(), "dnrm2", Storage::same, [&, f = blas.find<Norm>("dnrm2_")] { sink = f(&n, x.data(), &one); });
  }
  c.peer("Eigen", "", Storage::same, [&] { sink = eigen::norm2(n, x.data()); });
  report.measure(c);
}

}  // namespace

void sums(Report& report) {
  const std::pair<const char*, void (*)(Report&, std::int32_t, const Numbers&)> routines[] = {
      {"e_dasum", dasum}, {"e_ddoti", ddoti}, {"e_dnrm2", dnrm2}};
  for (const auto& [name, routine] : routines) {
    for (const std::int32_t n : {100, 1000, 10000, 100000, 1000000, 10000000}) {
      if (report.wants(name)) {
        routine(report, n, some_numbers(size(n)));
      }
    }
  }
}

}  // namespace zorbench
