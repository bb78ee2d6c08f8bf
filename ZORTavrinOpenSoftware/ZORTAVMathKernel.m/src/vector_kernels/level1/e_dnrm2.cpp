// SPDX-License-Identifier: MIT
// sqrt(x(1)² + ... + x(n)²) without overflow or destructive underflow, in one pass.
//
// The four phases of C. L. Lawson's norm (Lawson, Hanson, Kincaid, Krogh: Basic linear algebra subprograms for Fortran
// usage, ACM TOMS 5, 1979): zeros, small elements scaled by the largest, mid-range elements as they are, large elements
// scaled. The walk never goes back to an earlier phase, and it is sequential: the order is fixed.
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/strided.h"

namespace {

// Squares of magnitudes above cutlo do not underflow harmfully; n squares below cuthi/n do not overflow.
constexpr double cutlo = 8.232e-11;
constexpr double cuthi = 1.304e19;

constexpr std::int64_t group = 8;

// xmax²·sum is what has been summed so far.
struct ScaledSum {
  double xmax;
  double sum;

  void add(double x) noexcept {
    const double size = std::fabs(x);
    if (size <= xmax) {
      const double ratio = x / xmax;
      sum += ratio * ratio;
    } else {
      const double ratio = xmax / x;
      sum = (sum * ratio) * ratio + 1;
      xmax = size;
    }
  }
  double root() const noexcept { return xmax * std::sqrt(sum); }
};

}  // namespace

double e_dnrm2(const int32_t* n, const double* x, const int32_t* incx) {
  const std::int64_t count = *n;
  if (count < 1) {
    return 0;
  }
  const std::int64_t step = std::llabs(*incx);
  const auto at = [=](std::int64_t i) { return zortav::element(x, i * step); };
  // Through single precision on purpose: it settles the last bits of the limit for large n.
  const double hitest = cuthi / static_cast<double>(static_cast<float>(*n));

  std::int64_t i = 0;
  while (i < count && at(i) == 0) {
    ++i;
  }
  if (i == count) {
    return 0;
  }
  double sum = 0;
  if (!(std::fabs(at(i)) > cutlo)) {
    ScaledSum small{std::fabs(at(i)), 1};
    for (++i; i < count && !(std::fabs(at(i)) > cutlo); ++i) {
      small.add(at(i));
    }
    if (i == count) {
      return small.root();
    }
    sum = (small.sum * small.xmax) * small.xmax;
  }
  // Eight comparisons apart from the additions, which then wait for nothing but each other.
  for (bool all = true; all && i + group <= count;) {
    for (std::int64_t k = i; k < i + group; ++k) {
      all = all & (std::fabs(at(k)) < hitest);
    }
    if (all) {
      for (const std::int64_t end = i + group; i < end; ++i) {
        sum += at(i) * at(i);
      }
    }
  }
  for (; i < count && std::fabs(at(i)) < hitest; ++i) {
    sum += at(i) * at(i);
  }
  if (i == count) {
    return std::sqrt(sum);
  }
  ScaledSum large{std::fabs(at(i)), (sum / at(i)) / at(i) + 1};
  for (++i; i < count; ++i) {
    large.add(at(i));
  }
  return large.root();
}
