// SPDX-License-Identifier: MIT
// eagemv and its kernels on arrays off their elements' boundary, and the kernels, which check nothing, on columns that
// are all one.
#include <gtest/gtest.h>

#include <functional>

#include "ZORTAVMatrixVectorProduct.h"
#include "vector_kernels/matrix_vector/matrix_vector_oracle.h"

namespace zortest {
namespace {

struct Routine {
  const char* name;
  bool plain;
  std::function<void(const int32_t* m, const int32_t* n, const double* alpha, const double* a, const int32_t* lda,
                     const double* x, const int32_t* incx, const double* beta, double* y, const int32_t* incy)>
      run;
  std::function<void(Product&)> expect;
};

template <class Routine>
auto with_option(Routine& routine, const char* option) {
  return [&routine, option](const int32_t* m, const int32_t* n, const double* alpha, const double* a, auto... rest) {
    routine(option, m, n, alpha, a, rest..., 1);
  };
}

void plain_rows(Product& p, int rows) {
  plain_piece(p, {0, rows, 0, p.n}, p.beta);
}

void transposed_by_fours(Product& p) {
  if (p.contiguous()) {
    grouped_piece(p, {0, p.m / 4 * 4, 0, p.n}, p.beta);
  } else {
    transposed_piece(p, {0, p.m, 0, p.n / 4 * 4}, p.beta);
  }
}

const Routine routines[] = {
    {"dgemv_n", true, dgemv_n, [](Product& p) { plain_rows(p, p.m); }},
    {"dgemv32_n", true, dgemv32_n, [](Product& p) { plain_rows(p, p.m / 4 * 4); }},
    {"dgemv_t", false, dgemv_t,
     [](Product& p) {
       transposed_piece(p, {0, p.m, 0, p.n}, p.beta);
     }},
    {"dgemv32_t", false, dgemv32_t, transposed_by_fours},
    {"dgemvf N", true, with_option(dgemvf, "N"), [](Product& p) { general_product(p, true); }},
    {"dgemvf T", false, with_option(dgemvf, "T"), [](Product& p) { general_product(p, false); }},
    {"eagemv N", true, with_option(eagemv, "N"), [](Product& p) { cut_product(p, true); }},
    {"eagemv C", false, with_option(eagemv, "C"), [](Product& p) { cut_product(p, false); }},
};

void check(const Routine& routine, Random& random, int m, int n) {
  const bool kernel = routine.run.target<decltype(&dgemv_n)>() != nullptr;
  Product p{.m = m,
            .n = n,
            .alpha = -1.3,
            .a = {},
            .lda = kernel && random.integer(0, 3) == 0 ? 0 : m + random.integer(0, 3),
            .x = {},
            .incx = random.integer(1, 2),
            .x_at = random.integer(0, 2) == 0 ? 8U : 2U,
            .beta = 0.3,
            .y = {},
            .incy = random.integer(1, 2)};
  p.a = spread<double>(random, static_cast<std::size_t>(p.lda * (n - 1) + m));
  p.x = spread<double>(random, reach(routine.plain ? n : m, p.incx));
  p.y = spread<double>(random, reach(routine.plain ? m : n, p.incy));
  const Guarded<double> a(p.a, 1, random.integer(0, 1) == 0 ? 0 : 4);
  const Guarded<double> x(p.x, 0, p.x_at);
  Guarded<double> y(p.y, 1, random.integer(0, 1) == 0 ? 0 : 4);
  routine.run(&p.m, &p.n, &p.alpha, a.data(), &p.lda, x.data(), &p.incx, &p.beta, y.data(), &p.incy);
  routine.expect(p);
  SCOPED_TRACE(testing::Message() << routine.name << " m " << m << " n " << n << " lda " << p.lda << " incx " << p.incx
                                  << " incy " << p.incy << " x at " << p.x_at);
  expect_same_bits(p.y, y.values());
  EXPECT_TRUE(y.intact());
}

TEST(MatrixVector, OffTheElementsBoundary) {
  Random random(53);
  for (const Routine& routine : routines) {
    for (const int m : {1, 3, 7, 8, 9, 16, 21, 65, 1025, 3001}) {
      for (const int n : {1, 2, 4, 5, 8, 11, 66, 131}) {
        check(routine, random, m, n);
        check(routine, random, m, n);
      }
    }
  }
}

}  // namespace
}  // namespace zortest
