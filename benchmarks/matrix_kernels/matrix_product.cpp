// SPDX-License-Identifier: MIT
// eagemm: one and two threads, C overwritten (beta = 0).
#include <cstdint>
#include <string>

#include "ZORTAVMatrixProduct.h"
#include "routines.h"
#include "support/blas_library.h"
#include "support/blas_types.h"
#include "support/data.h"
#include "support/eigen_peer.h"
#include "support/limits.h"

namespace zorbench {
namespace {

struct Shape {
  std::int32_t m;
  std::int32_t n;
  std::int32_t k;
};

std::string text(const char* operands, const Shape& s) {
  const std::string m = std::to_string(s.m);
  const bool square = s.m == s.n && s.n == s.k;
  return std::string(operands) + (square ? " n=" + m : " " + m + "x" + std::to_string(s.n) + "x" + std::to_string(s.k));
}

void measure(Report& report, const char* operands, const Shape& s, int threads, const std::vector<Target>& targets) {
  const bool transpose_a = operands[0] == 'T';
  const bool transpose_b = operands[1] == 'T';
  const Numbers a = some_numbers(size(s.m) * size(s.k));
  const Numbers b = some_numbers(size(s.k) * size(s.n), 8);
  Numbers c(size(s.m) * size(s.n));
  const std::int32_t lda = transpose_a ? s.k : s.m;
  const std::int32_t ldb = transpose_b ? s.n : s.k;
  const double alpha = 1.5;
  const double beta = 0.0;
  const double operations = 2.0 * s.m * s.n * s.k;
  Case product("eagemm", text(operands, s), operations, "Gflop/s");
  product.threads(threads);
  product.limit(operations / fused_peak(threads), "fused peak");
  for (const Target& target : targets) {
    product.target(target.least, target.of);
  }
  product.ours([&] {
    eagemm(operands, operands + 1, &s.m, &s.n, &s.k, &alpha, a.data(), &lda, b.data(), &ldb, &beta, c.data(), &s.m);
  });
  for (const BlasLibrary* blas : blas_libraries_for(operations)) {
    if (threads == 1 || blas->threaded()) {
      product.peer(blas->name(), "dgemm", Storage::same, [&, f = blas->find<Dgemm>("dgemm_")] {
        f(operands, operands + 1, &s.m, &s.n, &s.k, &alpha, a.data(), &lda, b.data(), &ldb, &beta, c.data(), &s.m, 1,
          1);
      });
    }
  }
  product.peer("Eigen", "", Storage::same,
               [&] { eigen::multiply(transpose_a, transpose_b, s.m, s.n, s.k, alpha, a.data(), b.data(), c.data()); });
  report.measure(product);
}

Shape square(std::int32_t n) {
  return {n, n, n};
}

}  // namespace

void matrix_product(Report& report) {
  if (!report.wants("eagemm")) {
    return;
  }
  for (const char* operands : {"NN", "TN"}) {
    for (const std::int32_t n : {250, 500, 1000, 2000, 3000}) {
      if (!report.quick() || n < 3000) {
        measure(report, operands, square(n), 1, {{"OpenBLAS", 1.05}, {"BLIS", 0.95}});
      }
    }
  }
  for (const char* operands : {"NT", "TT"}) {
    for (const std::int32_t n : {500, 1000, 2000}) {
      if (!report.quick() || n < 2000) {
        measure(report, operands, square(n), 1, {{"OpenBLAS", 0.95}});
      }
    }
  }
  for (const std::int32_t n : {8, 16, 32, 64, 100}) {
    measure(report, "NN", square(n), 1, {{"OpenBLAS", 0.8}});
  }
  for (const Shape& shape : {Shape{3000, 3000, 64}, Shape{3000, 48, 3000}, Shape{300, 300, 24}}) {
    measure(report, "NN", shape, 1, {{"best", 0.95}});
  }
  for (const auto& [n, least] : {std::pair{500, 0.8}, std::pair{1000, 0.9}, std::pair{2000, 0.95}}) {
    measure(report, "NN", square(n), 2, {{"best", least}});
    measure(report, "TN", square(n), 2, {{"best", least}});
  }
  for (const std::int32_t n : {500, 1000, 2000}) {
    measure(report, "NT", square(n), 2, {{"OpenBLAS", 0.8}});
    measure(report, "TT", square(n), 2, {{"OpenBLAS", 0.8}});
  }
}

}  // namespace zorbench
