// SPDX-License-Identifier: MIT
// T = S·diag(d)·Sᵀ for a tridiagonal T by the QL algorithm with implicit shifts; V := V·S.
// Method: Dubrulle, Martin and Wilkinson, Handbook for Automatic Computation II, contribution II/4 (imtql2), in its
// older form without a guard against a rotation of length zero.
#include <cmath>
#include <cstdint>

#include "ZORTAVEigenSolver.h"
#include "algorithms/eaxeql_recorder.h"

namespace {

constexpr int iterations_per_eigenvalue = 30;

// The first m >= l whose e[m] is lost beside its two diagonal neighbours; n - 1 if there is none.
std::int64_t end_of_block(std::int64_t l, std::int64_t n, const double* d, const double* e) {
  for (std::int64_t m = l; m + 1 < n; ++m) {
    const double dd = std::fabs(d[m]) + std::fabs(d[m + 1]);
    if (std::fabs(e[m]) + dd == dd) {
      return m;
    }
  }
  return n - 1;
}

}  // namespace

int32_t eaxeql(const int32_t* order, double* d, double* e, double* v, int32_t* ierr) {
  const std::int64_t n = *order;
  v[0] = 1.0;
  if (n < 2) {
    return 0;
  }
  for (std::int64_t i = 1; i < n; ++i) {
    e[i - 1] = e[i];
    v[i + i * n] = 1.0;
  }
  e[n - 1] = 0.0;

  zortav::RotationRecorder recorder(static_cast<std::size_t>(n), v);
  for (std::int64_t l = 0; l < n; ++l) {
    for (int count = 0;; ++count) {
      const std::int64_t m = end_of_block(l, n, d, e);
      if (m == l) {
        break;
      }
      if (count == iterations_per_eigenvalue) {
        recorder.flush();
        *ierr = static_cast<int32_t>(l + 1);
        return 1;
      }
      double g = (d[l + 1] - d[l]) / (2.0 * e[l]);
      double r = std::sqrt(g * g + 1.0);
      g = d[m] - d[l] + e[l] / (g >= 0.0 ? g + r : g - r);
      double s = 1.0;
      double c = 1.0;
      double p = 0.0;
      for (std::int64_t i = m - 1; i >= l;) {
        std::size_t granted = 0;
        zortav::Rotation* rotation =
            recorder.begin(static_cast<std::size_t>(i), static_cast<std::size_t>(i - l + 1), granted);
        for (const zortav::Rotation* const end = rotation + granted; rotation != end; ++rotation, --i) {
          const double f = s * e[i];
          const double b = c * e[i];
          if (std::fabs(f) >= std::fabs(g)) {
            c = g / f;
            r = std::sqrt(c * c + 1.0);
            e[i + 1] = f * r;
            s = 1.0 / r;
            c = c * s;
          } else {
            s = f / g;
            r = std::sqrt(s * s + 1.0);
            e[i + 1] = g * r;
            c = 1.0 / r;
            s = s * c;
          }
          g = d[i + 1] - p;
          r = (d[i] - g) * s + 2.0 * c * b;
          p = s * r;
          d[i + 1] = g + p;
          g = c * r - b;
          *rotation = {c, s};
        }
        recorder.end();
      }
      d[l] = d[l] - p;
      e[l] = g;
      e[m] = 0.0;
    }
  }
  recorder.flush();
  return 0;
}
