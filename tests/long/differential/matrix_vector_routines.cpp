// SPDX-License-Identifier: MIT
#include <algorithm>

#include "ZORTAVMatrixUtilities.h"
#include "ZORTAVMatrixVectorProduct.h"
#include "ZORTAVPackedSolves.h"
#include "long/differential/trial.h"
#include "vector_kernels/matrix_vector/matrix_vector_oracle.h"
#include "vector_kernels/packed_solves/packed_oracle.h"

namespace zortest {
namespace {

using Kernel = decltype(dgemv_n)*;

// The product of a trial, and its arrays as the library gets them.
struct Given {
  Product p;
  const double* a;
  const double* x;
  Reals* y;
};

Given product_of(Trial& t, bool plain, int incx, int incy) {
  const std::vector<int> columns = {63, 64, 65, 66, 127, 128, 130, 131};
  const int other = t.other_size(columns);
  const bool long_rows = t.random.integer(0, 1) == 0;
  const int m = std::max(0, long_rows ? other : t.n);
  const int n = std::max(0, long_rows ? t.n : other);
  const int lda = std::max(1, m) + t.random.integer(0, 3);
  Given g{{.m = m,
           .n = n,
           .alpha = t.alpha,
           .a = {},
           .lda = lda,
           .x = {},
           .incx = incx,
           .x_at = 0,
           .beta = t.beta,
           .y = {},
           .incy = incy},
          nullptr,
          nullptr,
          nullptr};
  g.p.a = t.numbers(static_cast<std::size_t>(n > 0 ? lda * (n - 1) + m : 0));
  for (int j = 0; j + 1 < n; ++j) {
    std::fill_n(g.p.a.begin() + j * lda + m, lda - m, nan);  // not A's
  }
  Reals& a = t.reals(g.p.a);
  Reals& x = t.reals(reach(plain ? n : m, incx));
  Reals& y = t.reals(reach(plain ? m : n, incy));
  g.p.x = x.own;
  g.p.y = y.own;
  g.p.x_at = reinterpret_cast<std::uintptr_t>(x.data()) % 64;
  g.a = a.data();
  g.x = x.data();
  g.y = &y;
  return g;
}

void finish(Given& g, void (*oracle)(Product&)) {
  if (g.p.m > 0 && g.p.n > 0 && (g.p.alpha != 0 || g.p.beta != 1)) {
    oracle(g.p);
    g.y->own = g.p.y;
  }
}

// The kernels, for the increments that the driver hands them.
template <Kernel kernel, bool plain>
void run_kernel(Trial& t, void (*oracle)(Product&)) {
  Given g = product_of(t, plain, std::abs(t.incx), std::max(1, std::abs(t.incy)));
  const Product& p = g.p;
  kernel(&p.m, &p.n, &p.alpha, g.a, &p.lda, g.x, &p.incx, &p.beta, g.y->data(), &p.incy);
  finish(g, oracle);
}

template <auto routine>
void run_with_option(Trial& t, void (*plain)(Product&), void (*transposed)(Product&)) {
  const char trans = t.one_of<char>({'N', 'T', 'C'});
  const auto some = [](int inc) { return inc == 0 ? 1 : inc; };  // 0 is refused
  Given g = product_of(t, trans == 'N', some(t.incx), some(t.incy));
  const Product& p = g.p;
  routine(&trans, &p.m, &p.n, &p.alpha, g.a, &p.lda, g.x, &p.incx, &p.beta, g.y->data(), &p.incy, 1);
  finish(g, trans == 'N' ? plain : transposed);
}

void plain_kernel(Trial& t) {
  run_kernel<dgemv_n, true>(t, [](Product& p) { plain_piece(p, {0, p.m, 0, p.n}, p.beta); });
}

void plain_kernel_by_fours(Trial& t) {
  run_kernel<dgemv32_n, true>(t, [](Product& p) { plain_piece(p, {0, p.m / 4 * 4, 0, p.n}, p.beta); });
}

void transposed_kernel(Trial& t) {
  run_kernel<dgemv_t, false>(t, [](Product& p) { transposed_piece(p, {0, p.m, 0, p.n}, p.beta); });
}

void transposed_kernel_by_fours(Trial& t) {
  run_kernel<dgemv32_t, false>(t, [](Product& p) {
    if (p.contiguous()) {
      grouped_piece(p, {0, p.m / 4 * 4, 0, p.n}, p.beta);
    } else {
      transposed_piece(p, {0, p.m, 0, p.n / 4 * 4}, p.beta);
    }
  });
}

void general_kernel(Trial& t) {
  run_with_option<dgemvf>(
      t, [](Product& p) { scaled_or_general(p, true); }, [](Product& p) { scaled_or_general(p, false); });
}

void driver(Trial& t) {
  run_with_option<eagemv>(
      t, [](Product& p) { scaled_or_cut(p, true); }, [](Product& p) { scaled_or_cut(p, false); });
}

// Strews numbers that have rules of their own, as many as the trial has among its numbers, over part of the entries.
void strew(Trial& t, std::vector<double>& v, int one_in) {
  const std::vector<double> drawn = t.numbers(v.size());
  for (std::size_t i = 0; i < v.size(); ++i) {
    if ((drawn[i] == 0 || !std::isfinite(drawn[i])) && t.random.integer(1, one_in) == 1) {
      v[i] = drawn[i];
    }
  }
}

void triangular_solve(Trial& t) {
  const int32_t incx = t.incx == 0 ? 1 : t.incx;
  Triangle triangle = random_triangle(t.random, t.random.integer(0, 7), std::max(1, t.n));
  strew(t, triangle.ap, triangle.n);
  std::vector<double> b = t.numbers(static_cast<std::size_t>(triangle.n));
  Reals& ap = t.reals(triangle.ap);
  std::vector<double> strided = t.numbers(reach(triangle.n, incx));
  for (int i = 0; i < triangle.n; ++i) {
    strided[place(i, triangle.n, incx)] = b[static_cast<std::size_t>(i)];
  }
  Reals& x = t.reals(strided);
  const char uplo = triangle.upper ? t.one_of<char>({'U', 'u'}) : t.one_of<char>({'L', 'l', 'x'});
  const char trans = triangle.transposed ? t.one_of<char>({'T', 'C', 't', '?'}) : t.one_of<char>({'N', 'n'});
  const char diag = triangle.unit ? t.one_of<char>({'U', 'u', ' '}) : t.one_of<char>({'N', 'n'});
  e_dtpsv(&uplo, &trans, &diag, &t.n, ap.data(), x.data(), &incx);
  if (t.n > 0) {
    b = solved(triangle, b);
    for (int i = 0; i < triangle.n; ++i) {
      x[place(i, triangle.n, incx)] = b[static_cast<std::size_t>(i)];
    }
  }
}

// Several right-hand sides; `one_only` for the routine that takes one.
template <auto solve>
void cholesky_solve(Trial& t) {
  const auto order = static_cast<std::size_t>(std::max(0, t.n));
  std::vector<double> factor = random_factor(t.random, std::max<std::size_t>(order, 1));
  strew(t, factor, static_cast<int>(order) + 1);
  const int32_t nrhs = t.one_of<int>({-1, 0, 1, 1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 33});
  const int32_t ldb = std::max(1, t.n) + t.random.integer(0, 3);
  const char uplo = t.one_of<char>({'U', 'U', 'U', 'u', 'u', 'L', 'X'});
  const bool upper = uplo == 'U' || uplo == 'u';
  Reals& ap = t.reals(factor);
  Reals& b = t.reals(static_cast<std::size_t>(ldb) * static_cast<std::size_t>(std::max(0, nrhs)));
  Integer& info = t.integers({7});
  solve(&uplo, &t.n, &nrhs, ap.data(), b.data(), &ldb, info.data(), 1);
  info[0] = upper ? 7 : 1;  // a success does not write it
  for (int32_t r = 0; upper && r < nrhs; ++r) {
    const auto first = b.own.begin() + r * ldb;
    const std::vector<double> x = solved(factor, {first, first + static_cast<std::ptrdiff_t>(order)});
    std::copy(x.begin(), x.end(), first);
  }
}

void single_solve(Trial& t) {
  const auto order = static_cast<std::size_t>(std::max(0, t.n));
  std::vector<double> factor = random_factor(t.random, std::max<std::size_t>(order, 1));
  strew(t, factor, static_cast<int>(order) + 1);
  Reals& f = t.reals(factor);
  Reals& b = t.reals(order);
  eacort(nullptr, &t.n, f.data(), b.data());
  b.own = solved(factor, b.own);
}

}  // namespace

std::vector<Routine> matrix_vector_routines() {
  const std::vector<int> products = {71, 72, 73, 127, 128, 129, 130, 191, 192, 193, 256, 257, 1023, 1024, 1025, 2056};
  const std::vector<int> solves = {71, 72, 73, 79, 80, 81, 127, 128, 129, 145, 255, 256, 257, 300, 519};
  return {{"dgemv_n", plain_kernel, products},
          {"dgemv32_n", plain_kernel_by_fours, products},
          {"dgemv_t", transposed_kernel, products},
          {"dgemv32_t", transposed_kernel_by_fours, products},
          {"dgemvf", general_kernel, products},
          {"eagemv", driver, products},
          {"e_dtpsv", triangular_solve, solves},
          {"dpptrs_2", cholesky_solve<dpptrs_2>, solves},
          {"e_dpptrs", cholesky_solve<e_dpptrs>, solves},
          {"eacort", single_solve, solves}};
}

}  // namespace zortest
