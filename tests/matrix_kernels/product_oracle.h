// SPDX-License-Identifier: MIT
// A naive product in the documented order of sums, and the operands to try it on.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "ZORTAVInstructionSet.h"
#include "ZORTAVMatrixProduct.h"
#include "support/numbers.h"

namespace zortest {

inline bool level_fuses() {
  int32_t active = 0;
  int32_t highest = 0;
  int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  return active != ZORTavInstructionSetSse4;
}

struct ProductCase {
  char transa, transb;
  int32_t m, n, k;
  double alpha, beta;
  int32_t lda_extra = 0, ldb_extra = 0, ldc_extra = 0;
  std::size_t offset = 0;  // of every array from a cache line, in doubles

  bool transpose_a() const { return transa != 'N' && transa != 'n'; }
  bool transpose_b() const { return transb != 'N' && transb != 'n'; }
  int32_t lda() const { return (transpose_a() ? k : m) + lda_extra; }
  int32_t ldb() const { return (transpose_b() ? n : k) + ldb_extra; }
  int32_t ldc() const { return m + ldc_extra; }
  std::size_t a_size() const { return size(lda(), transpose_a() ? m : k); }
  std::size_t b_size() const { return size(ldb(), transpose_b() ? k : n); }
  std::size_t c_size() const { return size(ldc(), n); }
  std::string text() const {
    return std::string{transa, transb} + " m=" + std::to_string(m) + " n=" + std::to_string(n) +
           " k=" + std::to_string(k) + " alpha=" + std::to_string(alpha) + " beta=" + std::to_string(beta) +
           " offset=" + std::to_string(offset);
  }

 private:
  static std::size_t size(int32_t ld, int32_t columns) {
    return static_cast<std::size_t>(ld) * static_cast<std::size_t>(columns);
  }
};

// Each depth block of 248: eight lanes, lane 0 from beta·C; s(t) = x(t) + x(t+4); (s0 + s1) + (s2 + s3).
inline std::vector<double> naive_product(const ProductCase& x, const std::vector<double>& a,
                                         const std::vector<double>& b, std::vector<double> c) {
  const bool fuse = level_fuses();
  const auto at = [](const std::vector<double>& v, int32_t i, int32_t j, int32_t ld) {
    return v[static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * static_cast<std::size_t>(ld)];
  };
  for (int32_t j = 0; j < x.n; ++j) {
    for (int32_t i = 0; i < x.m; ++i) {
      double& element =
          c[static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * static_cast<std::size_t>(x.ldc())];
      for (int32_t l0 = 0; l0 < x.k; l0 += 248) {
        const double beta = l0 == 0 ? x.beta : 1.0;
        double lane[8] = {beta == 0.0 ? 0.0 : beta * element};
        const int32_t depth = std::min(248, x.k - l0);
        for (int32_t l = 0; l < (depth + 7) / 8 * 8; ++l) {
          double p = 0.0;
          double q = 0.0;
          if (l < depth) {
            p = x.transpose_a() ? at(a, l0 + l, i, x.lda()) : at(a, i, l0 + l, x.lda());
            q = x.transpose_b() ? at(b, j, l0 + l, x.ldb()) : at(b, l0 + l, j, x.ldb());
            (x.transpose_b() ? q : p) *= x.alpha;
          }
          lane[l % 8] = fuse ? std::fma(p, q, lane[l % 8]) : lane[l % 8] + p * q;
        }
        const double s[4] = {lane[0] + lane[4], lane[1] + lane[5], lane[2] + lane[6], lane[3] + lane[7]};
        element = (s[0] + s[1]) + (s[2] + s[3]);
      }
    }
  }
  return c;
}

// Runs the library's product on guarded, misaligned copies and returns C with the rows between m and ldc.
inline std::vector<double> library_product(const ProductCase& x, const std::vector<double>& a,
                                           const std::vector<double>& b, const std::vector<double>& c) {
  const Guarded<double> ga(a, x.offset);
  const Guarded<double> gb(b, (x.offset + 3) % 8);
  Guarded<double> gc(c, (x.offset + 5) % 8);
  const int32_t lda = x.lda();
  const int32_t ldb = x.ldb();
  const int32_t ldc = x.ldc();
  eagemm(&x.transa, &x.transb, &x.m, &x.n, &x.k, &x.alpha, ga.data(), &lda, gb.data(), &ldb, &x.beta, gc.data(), &ldc);
  EXPECT_TRUE(gc.intact()) << x.text();
  return gc.values();
}

inline void expect_stated_bits(const ProductCase& x, Random& random) {
  SCOPED_TRACE(x.text());
  const auto a = random.vector(x.a_size());
  const auto b = random.vector(x.b_size());
  auto c = random.vector(x.c_size());
  expect_same_bits(naive_product(x, a, b, c), library_product(x, a, b, c));
}

}  // namespace zortest
