// SPDX-License-Identifier: MIT
// y := alpha·op(A)·x + beta·y. This file holds the checks and the cut: which kernel sums which part of A decides the
// order of every sum. Rows in whole groups of eight go to the dgemv32 kernels, 64 columns at a time; the last rows go
// to dgemv_n and dgemv_t; products with a negative increment go to dgemvf whole.
#include <algorithm>
#include <cstdint>

#include "ZORRuntime.h"
#include "ZORTAVMatrixVectorProduct.h"
#include "ZORTAVVectorKernels.h"
#include "vector_kernels/matrix_vector/quick_return.h"

namespace zortav {
namespace {

constexpr int32_t columns_per_block = 64;
constexpr int32_t rows_per_group = 8;
constexpr int32_t columns_per_group = 4;  // dgemv32_t has no other columns at increments other than 1
constexpr double already_scaled = 1.0;

struct Product {
  int32_t m;
  int32_t n;
  double alpha;
  const double* a;
  int32_t lda;
  const double* x;
  int32_t incx;
  double beta;
  double* y;
  int32_t incy;
};

using Kernel = void(const int32_t* m, const int32_t* n, const double* alpha, const double* a, const int32_t* lda,
                    const double* x, const int32_t* incx, const double* beta, double* y, const int32_t* incy);

// Hands rows × columns of A from (row, column) on, counted from 0, to a kernel, with its pieces of x and y.
void hand_over(Kernel& kernel, const Product& p, bool transposed, int32_t row, int32_t rows, int32_t column,
               int32_t columns, double beta) {
  const std::int64_t at_x = std::int64_t{transposed ? row : column} * p.incx;
  const std::int64_t at_y = std::int64_t{transposed ? column : row} * p.incy;
  kernel(&rows, &columns, &p.alpha, p.a + row + std::int64_t{column} * p.lda, &p.lda, p.x + at_x, &p.incx, &beta,
         p.y + at_y, &p.incy);
}

// Increments are positive.
void plain(const Product& p) {
  const int32_t last_rows = p.m % rows_per_group;
  const int32_t grouped_rows = p.m - last_rows;
  if (grouped_rows > 0) {
    for (int32_t j = 0; j < p.n;) {
      const int32_t columns = std::min(p.n - j, columns_per_block);
      hand_over(dgemv32_n, p, false, 0, grouped_rows, j, columns, j == 0 ? p.beta : already_scaled);
      j += columns;
    }
  }
  hand_over(dgemv_n, p, false, grouped_rows, last_rows, 0, p.n, p.beta);
}

// Increments are positive.
void transposed(const Product& p) {
  const int32_t last_rows = p.m % rows_per_group;
  const int32_t grouped_rows = p.m - last_rows;
  if (grouped_rows == 0) {
    hand_over(dgemv_t, p, true, 0, p.m, 0, p.n, p.beta);
    return;
  }
  const bool contiguous = p.incx == 1 && p.incy == 1;
  for (int32_t j = 0; j < p.n;) {
    const int32_t columns = std::min(p.n - j, columns_per_block);
    const bool whole = contiguous || columns % columns_per_group == 0;
    hand_over(whole ? dgemv32_t : dgemv_t, p, true, 0, grouped_rows, j, columns, p.beta);
    hand_over(dgemv_t, p, true, grouped_rows, last_rows, j, columns, already_scaled);
    j += columns;
  }
}

}  // namespace
}  // namespace zortav

void eagemv(const char* trans, const int32_t* m, const int32_t* n, const double* alpha, const double* a,
            const int32_t* lda, const double* x, const int32_t* incx, const double* beta, double* y,
            const int32_t* incy, int64_t trans_length) {
  using namespace zortav;
  const bool is_plain = *trans == 'N';
  if ((!is_plain && *trans != 'T' && *trans != 'C') || *m < 0 || *n < 0 || *lda < std::max(1, *m) || *incx == 0 ||
      *incy == 0) {
    ZORRuntimeStop("DGEMV Fatal Error");
  }
  if (nothing_to_do(*m, *n, *alpha, *beta)) {
    return;
  }
  if (*alpha == 0) {
    const int32_t leny = is_plain ? *m : *n;
    if (*beta == 0) {
      e_dzero(&leny, y, incy);
    } else {
      e_dscal(&leny, beta, y, incy);
    }
    return;
  }
  if (*incx < 0 || *incy < 0) {
    dgemvf(is_plain ? "N" : "T", m, n, alpha, a, lda, x, incx, beta, y, incy, trans_length);
    return;
  }
  (is_plain ? plain : transposed)({*m, *n, *alpha, a, *lda, x, *incx, *beta, y, *incy});
}
