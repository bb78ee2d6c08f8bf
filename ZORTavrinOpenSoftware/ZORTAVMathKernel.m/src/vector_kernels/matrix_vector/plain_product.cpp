// SPDX-License-Identifier: MIT
// y(i) := beta·y(i) + sum over j of a(i,j)·(alpha·x(j)), the columns of each row's sum paired as pairing.h says.
//
// A block of rows carries its sums through all columns. The rows do not meet, so the block's size leaves no trace in
// the results.
#include "vector_kernels/matrix_vector/plain_product.h"

#include <algorithm>
#include <cstddef>

#include "vector_kernels/level1/vector_kernel_table.h"
#include "vector_kernels/matrix_vector/matrix_vector_kernel_table.h"
#include "vector_kernels/matrix_vector/pairing.h"
#include "vector_kernels/matrix_vector/row_block.h"
#include "vector_kernels/strided.h"

namespace zortav {
namespace {

struct Columns {
  const double* a;
  std::int64_t lda;
  const double* x;
  std::int64_t incx;
  double alpha;
};

// visit(count, first column of A, factors) for the columns from..to-1, a block of them at a time.
template <class Visit>
void for_column_blocks(const Columns& columns, std::int64_t from, std::int64_t to, const Visit& visit) {
  double t[column_block];
  for (std::int64_t j = from; j < to; j += column_block) {
    const std::int64_t count = std::min(to - j, column_block);
    for (std::int64_t k = 0; k < count; ++k) {
      t[k] = columns.alpha * element(columns.x, (j + k) * columns.incx);
    }
    visit(static_cast<std::size_t>(count), columns.a + j * columns.lda, t);
  }
}

// sums(i) := sums(i) + the products of row i.
void add_products(std::int64_t rows, std::int64_t n, const Columns& columns, const Pairing& order, double* sums) {
  const MatrixVectorKernelTable& kernels = matrix_vector_kernels();
  const std::size_t row_count = static_cast<std::size_t>(rows);
  const auto add_columns = [&](std::int64_t from, std::int64_t to) {
    for_column_blocks(columns, from, to, [&](std::size_t count, const double* a, const double* t) {
      kernels.add_columns(row_count, count, a, columns.lda, t, sums);
    });
  };
  add_columns(0, order.peel);
  if (order.pairs > 0) {
    RowBlock second(columns.a);
    const double* const first = columns.a + order.peel * columns.lda;
    std::int64_t left = order.pairs;
    for_column_blocks(columns, order.peel, order.paired_end(),
                      [&](std::size_t count, const double* a, const double* t) {
                        left -= static_cast<std::int64_t>(count / 2);
                        kernels.add_column_pairs(row_count, count / 2, a, columns.lda, t, sums, second.data(),
                                                 {a == first, left == 0});
                      });
  }
  add_columns(order.paired_end(), n);
}

void block_of_rows(std::int64_t rows, std::int64_t n, const Columns& columns, const Pairing& order, double beta,
                   double* y, std::int64_t incy) {
  if (incy == 1) {
    if (beta != 1) {
      vector_kernels().dscal(static_cast<std::size_t>(rows), beta, y);
    }
    add_products(rows, n, columns, order, y);
    return;
  }
  RowBlock sums(columns.a);
  for (std::int64_t i = 0; i < rows; ++i) {
    sums[i] = beta * element(y, i * incy);
  }
  add_products(rows, n, columns, order, sums.data());
  for (std::int64_t i = 0; i < rows; ++i) {
    set_element(y, i * incy, sums[i]);
  }
}

}  // namespace

void plain_product(std::int64_t m, std::int64_t n, double alpha, const double* a, std::int64_t lda, const double* x,
                   std::int64_t incx, double beta, double* y, std::int64_t incy) {
  const Pairing order = lda == 0 ? Pairing{} : pairing(n, x, incx, incy);
  for (std::int64_t i = 0; i < m; i += row_block) {
    block_of_rows(std::min(m - i, row_block), n, {a + i, lda, x, incx, alpha}, order, beta, y + i * incy, incy);
  }
}

}  // namespace zortav
