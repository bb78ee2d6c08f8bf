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
          const std::int32_t size[] = {m, n, k};
          const std::int32_t ld[] = {(transa == 'N' ? m : k) + 1, (transb == 'N' ? k : n) + 2, m + 3};
          const Array a = random_array(random, ld[0] * (transa == 'N' ? k : m));
          const Array b = random_array(random, ld[1] * (transb == 'N' ? n : k));
          Array c = random_array(random, ld[2] * n);
          eagemm(&transa, &transb, &size[0], &size[1], &size[2], &alpha, a.data(), &ld[0], b.data(), &ld[1], &beta,
                 c.data(), &ld[2]);
          hash.add(c);
        }
      }
    }
  }
}

void rdgemm(BitHash& hash) {
  for (const double beta : {0.0, 1.0}) {
    Random random(10);
    const std::int32_t m = 90;
    const std::int32_t n = 31;
    const std::int32_t k = 260;
    const double one = 1.0;
    const Array a = random_array(random, m * k);
    const Array b = random_array(random, k * n);
    Array c = random_array(random, m * n);
    hash.add(prdgemm("N", "N", &m, &n, &k, &one, a.data(), &m, b.data(), &k, &beta, c.data(), &m));
    hash.add(c);
  }
}

void xmmp(BitHash& hash) {
  Random random(11);
  const std::int32_t m = 90;
  const std::int32_t n = 31;
  const std::int32_t k = 260;
  const Array a = random_array(random, m * k);
  const Array b = random_array(random, k * n);
  Array c = random_array(random, m * n);
  eaxmmp(&m, &k, &n, a.data(), b.data(), c.data());
  hash.add(c);
}

void bhpap(BitHash& hash) {
  Random random(12);
  const std::int32_t n = 97;
  const Array p = random_array(random, n * n);
  const Array d = random_array(random, n);
  Array w = random_array(random, n * n);
  Array r = random_array(random, n * n);
  ebhpap(&n, p.data(), d.data(), w.data(), r.data());
  hash.add(w);
  hash.add(r);
}

// A banded lower triangle, the diagonal last in its row.
void xmvm(BitHash& hash) {
  const std::int32_t n = 150;
  Random random(13);
  std::vector<std::int32_t> columns;
  std::vector<std::int32_t> ends{0};
  for (std::int32_t i = 1; i <= n; ++i) {
    for (std::int32_t j = std::max(1, i - 12); j < i; j += random.integer(1, 4)) {
      columns.push_back(j);
    }
    columns.push_back(i);
    ends.push_back(static_cast<std::int32_t>(columns.size()));
  }
  const auto nnz = static_cast<std::int32_t>(columns.size());
  const Array values = random_array(random, nnz);
  for (const std::int32_t mode : {1, 2}) {
    for (const std::int32_t nvec : {1, 2, 3, 4, 13}) {
      const Array x = random_array(random, n * nvec);
      Array y = random_array(random, n * nvec);
      eaxmvm(&mode, &nnz, &n, &n, &nvec, columns.data(), ends.data(), values.data(), x.data(), y.data());
      hash.add(y);
    }
  }
}

void xscl(BitHash& hash) {
  for (const std::int32_t n : {1, 7, 8, 203}) {
    for (const std::int32_t inc : {1, 3, -2}) {
      Random random(14);
      const std::int32_t one = 1;
      const Array x = random_array(random, 1 + 3 * n, 1);
      const Array y = random_array(random, n);
      hash.add(eaxscl(&n, x.data(), &inc, y.data(), &one));
    }
  }
}

void cort(BitHash& hash) {
  for (const std::int32_t n : {1, 5, 67, 130}) {
    Random random(15);
    const Array f = packed_triangle(random, n, true);
    Array b = random_array(random, n);
    eacort(&n, &n, f.data(), b.data());
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
