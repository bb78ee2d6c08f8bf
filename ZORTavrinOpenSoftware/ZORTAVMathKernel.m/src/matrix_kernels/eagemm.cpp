// SPDX-License-Identifier: MIT
// C := alpha·op(A)·op(B) + beta·C. This file holds the order of the tests and the choice of the route; the order
// decides which malformed calls are caught. The product itself is blocked_product.cpp's.
#include <algorithm>
#include <cstdint>

#include "ZORRuntime.h"
#include "ZORTAVConfiguration.h"
#include "ZORTAVMatrixProduct.h"
#include "ZORTAVVectorKernels.h"
#include "matrix_kernels/blocked_product.h"
#include "services/configuration/threading_mode.h"

namespace zortav {
namespace {

constexpr std::int32_t unit_increment = 1;

bool is_plain(char option) {
  return option == 'N' || option == 'n';
}
bool is_transposed(char option) {
  return option == 'T' || option == 't' || option == 'C' || option == 'c';
}

// Calls per_run(count, first element) for C as one run when its columns are adjacent, else for each column.
template <class PerRun>
void for_each_run(std::int32_t m, std::int32_t n, double* c, std::int32_t ldc, PerRun&& per_run) {
  if (m < 1 || n < 1) {
    return;  // the delegated route checks nothing before it comes here
  }
  const std::int64_t all = static_cast<std::int64_t>(m) * n;
  if (m == ldc && all <= INT32_MAX) {
    per_run(static_cast<std::int32_t>(all), c);
    return;
  }
  for (std::int32_t j = 0; j < n; ++j) {
    per_run(m, c + static_cast<std::int64_t>(j) * ldc);
  }
}

void scale(std::int32_t m, std::int32_t n, double factor, double* c, std::int32_t ldc) {
  for_each_run(m, n, c, ldc, [&](std::int32_t count, double* x) { e_dscal(&count, &factor, x, &unit_increment); });
}

void clear(std::int32_t m, std::int32_t n, double* c, std::int32_t ldc) {
  for_each_run(m, n, c, ldc, [&](std::int32_t count, double* x) { e_dzero(&count, x, &unit_increment); });
}

}  // namespace
}  // namespace zortav

void eagemm(const char* transa, const char* transb, const int32_t* m, const int32_t* n, const int32_t* k,
            const double* alpha, const double* a, const int32_t* lda, const double* b, const int32_t* ldb,
            const double* beta, double* c, const int32_t* ldc, int64_t transa_length, int64_t transb_length) {
  using namespace zortav;
  const bool plain_a = is_plain(*transa);
  const bool plain_b = is_plain(*transb);

  if (threading_mode() != multi_threaded_mode && plain_a && plain_b) {
    const bool keeps = *beta == 1.0;
    const bool clears = *beta == 0.0;
    const bool negative = *alpha == -1.0;
    if ((*alpha == 1.0 || negative) && (keeps || clears)) {
      const double plus = 1.0;
      if (negative && keeps) {
        scale(*m, *n, -1.0, c, *ldc);
      }
      prdgemm(transa, transb, m, n, k, &plus, a, lda, b, ldb, beta, c, ldc, transa_length, transb_length);
      clrfpe();
      if (negative) {
        scale(*m, *n, -1.0, c, *ldc);
      }
      return;
    }
  }

  if (*m == 0 || *n == 0) {
    return;
  }
  const bool no_product = *alpha == 0.0 || *k == 0;
  if (no_product && *beta == 1.0) {
    return;
  }
  const bool valid = (plain_a || is_transposed(*transa)) && (plain_b || is_transposed(*transb)) && *m >= 0 && *n >= 0 &&
                     *k >= 0 && *lda >= std::max(1, plain_a ? *m : *k) && *ldb >= std::max(1, plain_b ? *k : *n) &&
                     *ldc >= std::max(1, *m);
  if (!valid) {
    ZORRuntimeStop("DGEMM FATAL ERROR");
  }
  if (no_product) {
    if (*beta == 0.0) {
      clear(*m, *n, c, *ldc);
    } else {
      scale(*m, *n, *beta, c, *ldc);
    }
    return;
  }
  blocked_product({.transpose_a = !plain_a,
                   .transpose_b = !plain_b,
                   .m = *m,
                   .n = *n,
                   .k = *k,
                   .alpha = *alpha,
                   .a = a,
                   .lda = *lda,
                   .b = b,
                   .ldb = *ldb,
                   .beta = *beta,
                   .c = c,
                   .ldc = *ldc},
                  Team::threads);
}
