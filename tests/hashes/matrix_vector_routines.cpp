// SPDX-License-Identifier: MIT
// Matrix-vector products and packed solves.
#include <cstdlib>

#include "ZORTAVMathKernel.h"
#include "hashes/bit_hash.h"

namespace zortest {
namespace {

// By a routine that has an option before all else, or none.
template <auto routine, class... Option>
void product(BitHash& hash, bool transposed, const Option&... option) {
  for (const auto& [m, n] : {std::pair{1, 1}, {5, 4}, {67, 130}, {203, 67}}) {
    for (const auto& [incx, incy] : {std::pair{1, 1}, {2, 3}}) {
      Random random(6);
      const std::int32_t lda = m + 3;
      const Array a = random_array(random, lda * n);
      const Array x = random_array(random, (transposed ? m : n) * incx, 1);
      Array y = random_array(random, (transposed ? n : m) * incy);
      by_address(routine, option..., m, n, 0.9, a, lda, x, incx, -0.4, y, incy);
      hash.add(y);
    }
  }
}

template <auto kernel, bool transposed>
void kernel_routine(BitHash& hash) {
  product<kernel>(hash, transposed);
}

template <auto driver>
void driver_routine(BitHash& hash) {
  product<driver>(hash, false, 'N');
  product<driver>(hash, true, 'T');
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
          by_address(e_dtpsv, uplo, trans, 'N', n, ap, x, inc);
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
      const Array ap = packed_triangle(random, n, true);
      Array b = random_array(random, (n + 2) * nrhs);
      std::int32_t info = 7;
      by_address(routine, 'U', n, nrhs, ap, b, n + 2, info);
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
