// SPDX-License-Identifier: MIT
// eagemv and its kernels against plain loops, bit for bit.
#include <gtest/gtest.h>

#include <functional>

#include "ZORTAVMatrixVectorProduct.h"
#include "vector_kernels/matrix_vector/matrix_vector_oracle.h"

namespace zortest {
namespace {

struct Routine {
  const char* name;
  bool plain;
  std::vector<int> increments_x;
  std::vector<int> increments_y;
  std::function<void(const int32_t* m, const int32_t* n, const double* alpha, const double* a, const int32_t* lda,
                     const double* x, const int32_t* incx, const double* beta, double* y, const int32_t* incy)>
      run;
  std::function<void(Product&)> expect;  // with something to do
};

template <class Routine>
auto with_option(Routine& routine, const char* option) {
  return [&routine, option](const int32_t* m, const int32_t* n, const double* alpha, const double* a, auto... rest) {
    routine(option, m, n, alpha, a, rest..., 1);
  };
}

std::vector<Routine> routines() {
  const std::vector<int> forward = {1, 2, 3};
  const std::vector<int> forward_or_none = {1, 2, 3, 0};
  const std::vector<int> any = {1, -1, 2, -3};
  return {
      {"dgemv_n", true, forward_or_none, forward, dgemv_n,
       [](Product& p) {
         plain_piece(p, {0, p.m, 0, p.n}, p.beta);
       }},
      {"dgemv32_n", true, forward_or_none, forward, dgemv32_n,
       [](Product& p) {
         plain_piece(p, {0, p.m / 4 * 4, 0, p.n}, p.beta);
       }},
      {"dgemv_t", false, forward_or_none, forward, dgemv_t,
       [](Product& p) {
         transposed_piece(p, {0, p.m, 0, p.n}, p.beta);
       }},
      {"dgemv32_t", false, forward_or_none, forward, dgemv32_t,
       [](Product& p) {
         if (p.contiguous()) {
           grouped_piece(p, {0, p.m / 4 * 4, 0, p.n}, p.beta);
         } else {
           transposed_piece(p, {0, p.m, 0, p.n / 4 * 4}, p.beta);
         }
       }},
      {"dgemvf N", true, any, any, with_option(dgemvf, "N"), [](Product& p) { scaled_or_general(p, true); }},
      {"dgemvf T", false, any, any, with_option(dgemvf, "T"), [](Product& p) { scaled_or_general(p, false); }},
      {"eagemv N", true, any, any, with_option(eagemv, "N"), [](Product& p) { scaled_or_cut(p, true); }},
      {"eagemv C", false, any, any, with_option(eagemv, "C"), [](Product& p) { scaled_or_cut(p, false); }},
      {"eagemv T", false, {1}, {1}, with_option(eagemv, "T"), [](Product& p) { scaled_or_cut(p, false); }},
  };
}

template <class T>
T any_of(Random& random, const std::vector<T>& choices) {
  return choices[static_cast<std::size_t>(random.integer(0, static_cast<int>(choices.size()) - 1))];
}

// Numbers whose sums depend on their order, strewn with some that have rules of their own.
std::vector<double> numbers(Random& random, std::size_t n, double share_of_special) {
  std::vector<double> v = spread<double>(random, n);
  for (double& vi : v) {
    if (random.uniform(0, 1) < share_of_special) {
      vi = any_of<double>(random, {0.0, 0.0, 0.0, -0.0, -0.0, inf, nan});
    }
  }
  return v;
}

void check(const Routine& routine, Random& random, int m, int n) {
  const double share = any_of<double>(random, {0, 0.02, 0.3, 0.9});
  const int incx = any_of(random, routine.increments_x);
  const int incy = any_of(random, routine.increments_y);
  const bool contiguous_again = random.integer(0, 1) == 0;
  Product p{.m = m,
            .n = n,
            .alpha = any_of<double>(random, {1, 0.7, -1.3, -1.3, 0, nan}),
            .a = {},
            .lda = std::max(1, m) + random.integer(0, 3),
            .x = {},
            .incx = contiguous_again ? 1 : incx,
            .x_at = any_of<std::size_t>(random, {0, 8, 16, 24, 2}),
            .beta = any_of<double>(random, {1, 0.3, 0, -0.0, nan}),
            .y = {},
            .incy = contiguous_again ? 1 : incy};
  if (routine.run.target<decltype(&dgemv_n)>() != nullptr && random.integer(0, 9) == 0) {
    p.lda = 0;  // the kernels check nothing
  }
  p.a = numbers(random, static_cast<std::size_t>(n > 0 ? p.lda * (n - 1) + m : 0), share / (m + 1));
  p.x = numbers(random, reach(routine.plain ? n : m, p.incx), share);
  p.y = numbers(random, reach(routine.plain ? m : n, p.incy), share);
  for (int i = m; i < p.lda; ++i) {
    for (int j = 0; j + 1 < n; ++j) {
      p.a[static_cast<std::size_t>(i + j * p.lda)] = nan;  // not A's
    }
  }
  const Guarded<double> elsewhere(p.a, static_cast<std::size_t>(random.integer(0, 7)),
                                  any_of<std::size_t>(random, {0, 0, 4}));
  // In its own place, reading past its end is seen by the sanitizer.
  const double* const a = random.integer(0, 1) == 0 ? p.a.data() : elsewhere.data();
  const Guarded<double> x(p.x, 0, p.x_at);
  Guarded<double> y(p.y, static_cast<std::size_t>(random.integer(0, 7)), any_of<std::size_t>(random, {0, 0, 4}));
  routine.run(&p.m, &p.n, &p.alpha, a, &p.lda, x.data(), &p.incx, &p.beta, y.data(), &p.incy);
  if (m > 0 && n > 0 && (p.alpha != 0 || p.beta != 1)) {
    routine.expect(p);
  }
  SCOPED_TRACE(testing::Message() << routine.name << " m " << m << " n " << n << " lda " << p.lda << " alpha "
                                  << p.alpha << " beta " << p.beta << " incx " << p.incx << " incy " << p.incy
                                  << " x at " << p.x_at);
  expect_same_bits(p.y, y.values());
  EXPECT_TRUE(y.intact());
}

TEST(MatrixVector, EverySizeAroundTheCuts) {
  Random random(53);
  for (const Routine& routine : routines()) {
    for (int m = 0; m <= 80 && !HasFailure(); m += m < 42 ? 1 : 5) {
      for (int n = 0; n <= 21 && !HasFailure(); ++n) {
        check(routine, random, m, n);
        check(routine, random, m, n);
      }
      for (const int n : {31, 32, 63, 64, 65, 66, 67, 127, 128, 130, 131, 196}) {
        check(routine, random, m, n);
      }
    }
    for (const int m : {127, 128, 129, 1023, 1024, 1025, 1026, 2056, 3001}) {
      for (const int n : {1, 2, 5, 64, 68, 131}) {
        check(routine, random, m, n);
      }
    }
  }
}

}  // namespace
}  // namespace zortest
