// SPDX-License-Identifier: MIT
// A naive product in the documented order of sums, and the operands to try it on.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "ZORTAVInstructionSet.h"
#include "ZORTAVMatrixProduct.h"
#include "support/numbers.h"

namespace zortest {

struct ProductCase {
  char transa, transb;
  int32_t m, n, k;
  double alpha, beta;
  int32_t lda_extra = 0, ldb_extra = 0, ldc_extra = 0;
  std::size_t offset = 0;  // of every array from a cache line, in doubles

  bool transpose_a() const { return transa != 'N' && transa != 'n'; }
  bool transpose_b() const { return transb != 'N' && transb != 'n'; }
  int32_t lda() const { return std::max(1, transpose_a() ? k : m) + lda_extra; }
  int32_t ldb() const { return std::max(1, transpose_b() ? n : k) + ldb_extra; }
  int32_t ldc() const { return m + ldc_extra; }
  std::string text() const {
    return std::string{transa, transb} + " m=" + std::to_string(m) + " n=" + std::to_string(n) +
           " k=" + std::to_string(k) + " alpha=" + std::to_string(alpha) + " beta=" + std::to_string(beta) +
           " offset=" + std::to_string(offset);
  }
};

inline std::size_t position(int32_t i, int32_t j, int32_t ld) {
  return static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * static_cast<std::size_t>(ld);
}

// Not std::fma, which rounds twice in some C runtimes. Called only where the processor has the instruction.
__attribute__((target("fma"))) inline double fused(double p, double q, double sum) {
  return __builtin_fma(p, q, sum);
}

// Random operands; whatever the product may not read is no number.
class Operands {
 public:
  Operands(const ProductCase& size, Random& random) : x(size) {
    const bool reads = x.alpha != 0.0;
    a = matrix(x.transpose_a() ? x.k : x.m, x.transpose_a() ? x.m : x.k, x.lda(), reads, nan, random);
    b = matrix(x.transpose_b() ? x.n : x.k, x.transpose_b() ? x.k : x.n, x.ldb(), reads, nan, random);
    // The rows of C beyond m are to be kept, which a NaN would not show.
    c = matrix(x.m, x.n, x.ldc(), x.beta != 0.0, -7.0, random);
  }

  // One chain for each element: from beta·C, product after product in increasing depth.
  std::vector<double> in_stated_order() const {
    int32_t level = 0, highest = 0, reason = 0;
    ehgetisa(&level, &highest, &reason);
    const bool fuse = level != ZORTavInstructionSetSse4;
    std::vector<double> result = c;
    for (int32_t j = 0; j < x.n; ++j) {
      for (int32_t i = 0; i < x.m; ++i) {
        double& element = result[position(i, j, x.ldc())];
        element = x.beta == 0.0 ? 0.0 : x.beta * element;
        for (int32_t l = 0; x.alpha != 0.0 && l < x.k; ++l) {
          double p = x.transpose_a() ? a[position(l, i, x.lda())] : a[position(i, l, x.lda())];
          double q = x.transpose_b() ? b[position(j, l, x.ldb())] : b[position(l, j, x.ldb())];
          (x.transpose_b() ? q : p) *= x.alpha;
          element = fuse ? fused(p, q, element) : element + p * q;
        }
      }
    }
    return result;
  }

  // Runs the library's product on guarded, misaligned copies and returns C with the rows between m and ldc.
  std::vector<double> product() const {
    const Guarded<double> ga(a, x.offset);
    const Guarded<double> gb(b, (x.offset + 3) % 8);
    Guarded<double> gc(c, (x.offset + 5) % 8);
    const int32_t lda = x.lda(), ldb = x.ldb(), ldc = x.ldc();
    eagemm(&x.transa, &x.transb, &x.m, &x.n, &x.k, &x.alpha, ga.data(), &lda, gb.data(), &ldb, &x.beta, gc.data(),
           &ldc);
    EXPECT_TRUE(gc.intact());
    return gc.values();
  }

 private:
  static std::vector<double> matrix(int32_t rows, int32_t columns, int32_t ld, bool given, double beyond,
                                    Random& random) {
    std::vector<double> v(position(0, columns, ld), beyond);
    for (int32_t j = 0; j < columns; ++j) {
      for (int32_t i = 0; i < rows && i < ld; ++i) {
        v[position(i, j, ld)] = given ? random.uniform() : nan;
      }
    }
    return v;
  }

  ProductCase x;
  std::vector<double> a, b, c;
};

}  // namespace zortest
