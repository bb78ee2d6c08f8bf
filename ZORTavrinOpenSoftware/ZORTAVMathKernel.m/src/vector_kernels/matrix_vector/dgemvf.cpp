// SPDX-License-Identifier: MIT
// y := alpha·op(A)·x + beta·y for increments of either sign, with the published semantics: y is scaled first; the plain
// product then adds column after column and leaves out those whose x is 0, the transposed one adds alpha times one dot
// product per column.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "ZORRuntime.h"
#include "ZORTAVMatrixVectorProduct.h"
#include "ZORTAVVectorKernels.h"
#include "vector_kernels/matrix_vector/matrix_vector_kernel_table.h"
#include "vector_kernels/matrix_vector/pairing.h"
#include "vector_kernels/matrix_vector/quick_return.h"
#include "vector_kernels/matrix_vector/row_block.h"
#include "vector_kernels/matrix_vector/transposed_product.h"
#include "vector_kernels/strided.h"

namespace zortav {
namespace {

// The number of the first bad argument, 0 if there is none.
int bad_argument(char trans, int32_t m, int32_t n, int32_t lda, int32_t incx, int32_t incy) {
  if (trans != 'N' && trans != 'T' && trans != 'C') {
    return 1;
  }
  if (m < 0) {
    return 2;
  }
  if (n < 0) {
    return 3;
  }
  if (lda < std::max(1, m)) {
    return 6;
  }
  if (incx == 0) {
    return 8;
  }
  return incy == 0 ? 11 : 0;
}

// y(i) := y(i) + (alpha·x(j))·a(i,j) for the columns with x(j) ≠ 0, in ascending order. A block of rows takes all
// columns before the next one does.
void add_columns(std::int64_t m, std::int64_t n, double alpha, const double* a, std::int64_t lda, const double* x,
                 std::int64_t incx, double* y, std::int64_t incy) {
  double t[column_block];
  for (std::int64_t i = 0; i < m; i += row_block) {
    const std::int64_t rows = std::min(m - i, row_block);
    RowBlock sums(a + i);
    for (std::int64_t k = 0; k < rows; ++k) {
      sums[k] = element(y, (i + k) * incy);
    }
    for (std::int64_t j = 0; j < n;) {
      std::int64_t count = 0;  // of columns from j on, up to the next that is left out
      for (; count < column_block && j + count < n && element(x, (j + count) * incx) != 0; ++count) {
        t[count] = alpha * element(x, (j + count) * incx);
      }
      matrix_vector_kernels().add_columns(static_cast<std::size_t>(rows), static_cast<std::size_t>(count),
                                          a + i + j * lda, lda, t, sums.data());
      j += count == column_block ? count : count + 1;
    }
    for (std::int64_t k = 0; k < rows; ++k) {
      set_element(y, (i + k) * incy, sums[k]);
    }
  }
}

// y(j) := y(j) + alpha·(sum over i of a(i,j)·x(i)).
void add_dots(std::int64_t m, std::int64_t n, double alpha, const double* a, std::int64_t lda, const double* x,
              std::int64_t incx, double* y, std::int64_t incy) {
  constexpr std::int64_t shortest_paired = 8;
  Pairing order;
  if (m >= shortest_paired) {
    order = incx == 1 ? contiguous_pairing(m, x) : strided_pairing(m, incx);
  }
  for (std::int64_t j = 0; j < n; j += column_block) {
    const std::int64_t columns = std::min(n - j, column_block);
    double dots[column_block] = {};
    add_paired_dots({m, x, incx, 1.0}, order, columns, a + j * lda, lda, dots);
    for (std::int64_t k = 0; k < columns; ++k) {
      set_element(y, (j + k) * incy, element(y, (j + k) * incy) + alpha * dots[k]);
    }
  }
}

}  // namespace
}  // namespace zortav

void dgemvf(const char* trans, const int32_t* m, const int32_t* n, const double* alpha, const double* a,
            const int32_t* lda, const double* x, const int32_t* incx, const double* beta, double* y,
            const int32_t* incy, int64_t /*trans_length*/) {
  const int number = zortav::bad_argument(*trans, *m, *n, *lda, *incx, *incy);
  if (number != 0) {
    ZORRuntimeWriteRecord("DGEMV Error :", number);
    return;
  }
  if (zortav::nothing_to_do(*m, *n, *alpha, *beta)) {
    return;
  }
  const double scale = *alpha;
  const bool plain = *trans == 'N';
  const int32_t lenx = plain ? *n : *m;
  const int32_t leny = plain ? *m : *n;
  if (*beta == 0) {
    e_dzero(&leny, y, incy);
  } else if (*beta != 1) {
    e_dscal(&leny, beta, y, incy);
  }
  if (scale == 0) {
    return;
  }
  x += zortav::first_position(lenx, *incx);
  y += zortav::first_position(leny, *incy);
  const auto add = plain ? zortav::add_columns : zortav::add_dots;
  add(*m, *n, scale, a, *lda, x, *incx, y, *incy);
}
