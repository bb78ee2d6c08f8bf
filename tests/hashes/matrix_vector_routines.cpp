// SPDX-License-Identifier: MIT
// Matrix-vector products and packed solves.
#include <cstdlib>

#include "ZORTAVMathKernel.h"
#include "hashes/bit_hash.h"

namespace zortest {
namespace {

// Calls `run` for products with x of `length_x` and y of `length_y` numbers, by increments of both kinds.
template <class Run>
void sweep(bool transposed, BitHash& hash, Run run) {
  for (const auto& [m, n] : {std::pair{1, 1}, {5, 4}, {67, 130}, {203, 67}}) {
    for (const auto& [incx, incy] : {std::pair{1, 1}, {2, 3}}) {
      Random random(6);
      const std::int32_t rows = m;
      const std::int32_t columns = n;
      const std::int32_t lda = m + 3;
      const std::int32_t stride_x = incx;
      const std::int32_t stride_y = incy;
      const Array a = random_array(random, lda * n);
      const Array x = random_array(random, (transposed ? m : n) * incx, 1);
      Array y = random_array(random, (transposed ? n : m) * incy);
      run(&rows, &columns, a.data(), &lda, x.data(), &stride_x, y.data(), &stride_y);
      hash.add(y);
    }
  }
}

constexpr double alpha = 0.9;
constexpr double beta = -0.4;

template <auto kernel, bool transposed>
void kernel_routine(BitHash& hash) {
  sweep(transposed, hash, [](auto m, auto n, auto a, auto lda, auto x, auto incx, auto y, auto incy) {
    kernel(m, n, &alpha, a, lda, x, incx, &beta, y, incy);
  });
}

template <auto driver>
void driver_routine(BitHash& hash) {
  for (const char trans : {'N', 'T'}) {
    sweep(trans == 'T', hash, [trans](auto m, auto n, auto a, auto lda, auto x, auto incx, auto y, auto incy) {
      driver(&trans, m, n, &alpha, a, lda, x, incx, &beta, y, incy, 1);
    });
  }
}

void dtpsv(BitHash& hash) {
  for (const std::int32_t n : {1, 7, 67, 130}) {
    for (const char uplo : {'U', 'L'}) {
      for (const char trans : {'N', 'T'}) {
        for (const std::int32_t inc : {1, 2, -1}) {
          Random random(7);
          // With a diagonal that is not read the solution would grow beyond all numbers.
          const Array ap = packed_triangle(random, n, uplo == 'U');
          Array x = random_array(random, 1 + (n - 1) * std::abs(inc));
          e_dtpsv(&uplo, &trans, "N", &n, ap.data(), x.data(), &inc);
          hash.add(x);
        }
      }
    }
  }
}

template <auto routine>
void packed_solve(BitHash& hash) {
  for (const std::int32_t n : {1, 7, 67}) {
    for (const std::int32_t nrhs : {1, 2, 9, 17}) {
      Random random(8);
      const std::int32_t ldb = n + 2;
      const Array ap = packed_triangle(random, n, true);
      Array b = random_array(random, ldb * nrhs);
      std::int32_t info = 7;
      routine("U", &n, &nrhs, ap.data(), b.data(), &ldb, &info, 1);
      hash.add(b);
      hash.add(info);
    }
  }
}

}  // namespace

std::vector<Routine> matrix_vector_routines() {
  return {{"dgemv_n", kernel_routine<dgemv_n, false>},
          {"dgemv32_n", kernel_routine<dgemv32_n, false>},
          {"dgemv_t", kernel_routine<dgemv_t, true>},
          {"dgemv32_t", kernel_routine<dgemv32_t, true>},
          {"dgemvf", driver_routine<dgemvf>},
          {"eagemv", driver_routine<eagemv>},
          {"e_dtpsv", dtpsv},
          {"e_dpptrs", packed_solve<e_dpptrs>},
          {"dpptrs_2", packed_solve<dpptrs_2>}};
}

}  // namespace zortest
