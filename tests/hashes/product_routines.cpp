// SPDX-License-Identifier: MIT
// Matrix-matrix products, the sparse product, the floating-point utilities.
#include "ZORTAVMathKernel.h"
#include "hashes/bit_hash.h"

namespace zortest {
namespace {

void gemm(BitHash& hash) {
  for (const char transa : {'N', 'T'}) {
    for (const char transb : {'N', 'T'}) {
      for (const auto& [m, n, k] : {std::array{3, 2, 5}, {83, 65, 250}, {250, 101, 31}}) {
        for (const auto& [alpha, beta] : {std::pair{1.0, 0.0}, {-1.0, 1.0}, {0.7, -0.3}}) {
          Random random(9);
          const std::int32_t lda = (transa == 'N' ? m : k) + 1;
          const std::int32_t ldb = (transb == 'N' ? k : n) + 2;
          const Array a = random_array(random, lda * (transa == 'N' ? k : m));
          const Array b = random_array(random, ldb * (transb == 'N' ? n : k));
          Array c = random_array(random, (m + 3) * n);
          by_address(eagemm, transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, m + 3);
          hash.add(c);
        }
      }
    }
  }
}

constexpr std::int32_t rows = 90;
constexpr std::int32_t columns = 31;
constexpr std::int32_t depth = 260;

void rdgemm(BitHash& hash) {
  for (const double beta : {0.0, 1.0}) {
    Random random(10);
    const Array a = random_array(random, rows * depth);
    const Array b = random_array(random, depth * columns);
    Array c = random_array(random, rows * columns);
    hash.add(by_address(prdgemm, 'N', 'N', rows, columns, depth, 1.0, a, rows, b, depth, beta, c, rows));
    hash.add(c);
  }
}

void xmmp(BitHash& hash) {
  Random random(11);
  const Array a = random_array(random, rows * depth);
  const Array b = random_array(random, depth * columns);
  Array c = random_array(random, rows * columns);
  by_address(eaxmmp, rows, depth, columns, a, b, c);
  hash.add(c);
}

void bhpap(BitHash& hash) {
  Random random(12);
  const std::int32_t order = 97;
  const Array p = random_array(random, order * order);
  const Array d = random_array(random, order);
  Array w = random_array(random, order * order);
  Array r = random_array(random, order * order);
  by_address(ebhpap, order, p, d, w, r);
  hash.add(w);
  hash.add(r);
}

// A banded lower triangle, the diagonal last in its row.
void xmvm(BitHash& hash) {
  const std::int32_t n = 150;
  Random random(13);
  std::vector<std::int32_t> colidx;
  std::vector<std::int32_t> ends{0};
  for (std::int32_t i = 1; i <= n; ++i) {
    for (std::int32_t j = std::max(1, i - 12); j < i; j += random.integer(1, 4)) {
      colidx.push_back(j);
    }
    colidx.push_back(i);
    ends.push_back(static_cast<std::int32_t>(colidx.size()));
  }
  const auto nnz = static_cast<std::int32_t>(colidx.size());
  const Array values = random_array(random, nnz);
  for (const std::int32_t mode : {1, 2}) {
    for (const std::int32_t nvec : {1, 2, 3, 4, 13}) {
      const Array x = random_array(random, n * nvec);
      Array y = random_array(random, n * nvec);
      by_address(eaxmvm, mode, nnz, n, n, nvec, colidx, ends, values, x, y);
      hash.add(y);
    }
  }
}

void xscl(BitHash& hash) {
  for (const std::int32_t n : {1, 7, 8, 203}) {
    for (const std::int32_t inc : {1, 3, -2}) {
      Random random(14);
      const Array x = random_array(random, 1 + 3 * n, 1);
      hash.add(by_address(eaxscl, n, x, inc, random_array(random, n), 1));
    }
  }
}

void cort(BitHash& hash) {
  for (const std::int32_t n : {1, 5, 67, 130}) {
    Random random(15);
    const Array f = packed_triangle(random, n, true);
    Array b = random_array(random, n);
    by_address(eacort, n, n, f, b);
    hash.add(b);
  }
}

void xrnd(BitHash& hash) {
  std::int32_t seed = 4711;
  double r = 0;
  for (int i = 0; i < 1000; ++i) {
    eaxrnd(&seed, &r);
    hash.add(r);
  }
  hash.add(seed);
}

}  // namespace

std::vector<Routine> product_routines() {
  return {{"eagemm", gemm}, {"prdgemm", rdgemm}, {"eaxmmp", xmmp}, {"ebhpap", bhpap},
          {"eaxmvm", xmvm}, {"eaxscl", xscl},    {"eacort", cort}, {"eaxrnd", xrnd}};
}

}  // namespace zortest
