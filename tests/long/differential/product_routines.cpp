// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "ZORTAVConfiguration.h"
#include "ZORTAVMatrixProduct.h"
#include "ZORTAVMatrixUtilities.h"
#include "long/differential/trial.h"

namespace zortest {
namespace {

// A matrix of the trial by columns of ld elements; what lies between its rows and ld is no number.
struct Operand {
  std::size_t ld;
  const std::vector<double>& v;
  bool transposed;
};

// Of op(A).
Line row(const Operand& a, std::size_t i) {
  return {a.v.data() + i * (a.transposed ? a.ld : 1), a.transposed ? 1 : a.ld};
}
Line column(const Operand& a, std::size_t j) {
  return row({a.ld, a.v, !a.transposed}, j);
}

std::vector<double> matrix(Trial& t, int rows, int columns, int ld, double beyond) {
  std::vector<double> v = t.numbers(static_cast<std::size_t>(ld) * static_cast<std::size_t>(columns));
  for (int j = 0; j < columns; ++j) {
    std::fill_n(v.begin() + j * ld + rows, ld - rows, beyond);
  }
  return v;
}

struct Shape {
  int m, n, k;
};

// C := alpha·op(A)·op(B) + beta·C element by element, alpha on the operand that the sums do not run past.
void expect_product(Reals& c, std::size_t ldc, const Shape& s, double alpha, const Operand& a, const Operand& b,
                    double beta) {
  for (std::size_t j = 0; j < static_cast<std::size_t>(s.n); ++j) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(s.m); ++i) {
      const std::size_t at = i + j * ldc;
      const Line x = b.transposed ? column(b, j) : row(a, i);
      const Line y = b.transposed ? row(a, i) : column(b, j);
      c.expect_within(
          at, dot(s.k + 2, alpha == 0 ? 0 : s.k, x, y, alpha, beta == 0 ? 0 : static_cast<long double>(beta) * c[at]));
    }
  }
}

Shape shape(Trial& t) {
  Shape s{t.other_size(), t.other_size(), t.other_size()};
  t.one_of<int*>({&s.m, &s.n, &s.k})[0] = std::max(0, t.n);
  return s;
}

void product(Trial& t) {
  t.keep_moderate();
  const Shape s = shape(t);
  const char transa = t.one_of<char>({'N', 'n', 'T', 't', 'C', 'c'});
  const char transb = t.one_of<char>({'N', 'n', 'T', 't', 'C', 'c'});
  const bool ta = transa != 'N' && transa != 'n';
  const bool tb = transb != 'N' && transb != 'n';
  const int32_t lda = std::max(1, ta ? s.k : s.m) + t.random.integer(0, 3);
  const int32_t ldb = std::max(1, tb ? s.n : s.k) + t.random.integer(0, 3);
  const int32_t ldc = std::max(1, s.m) + t.random.integer(0, 1) * t.random.integer(0, 3);
  Reals& a = t.reals(matrix(t, ta ? s.k : s.m, ta ? s.m : s.k, lda, nan));
  Reals& b = t.reals(matrix(t, tb ? s.n : s.k, tb ? s.k : s.n, ldb, nan));
  Reals& c = t.reals(matrix(t, s.m, s.n, ldc, -7));
  eagemm(&transa, &transb, &s.m, &s.n, &s.k, &t.alpha, a.data(), &lda, b.data(), &ldb, &t.beta, c.data(), &ldc);
  if ((t.alpha != 0 && s.k != 0) || t.beta != 1) {
    expect_product(c, static_cast<std::size_t>(ldc), s, t.alpha, {static_cast<std::size_t>(lda), a.own, ta},
                   {static_cast<std::size_t>(ldb), b.own, tb}, t.beta);
  }
}

void product_of_team(Trial& t) {
  int32_t decision = -1;
  int32_t mode = 0;
  int32_t unused[2] = {};
  ehaldb(&decision);  // the threading mode of the process, from the environment; from now on it stays
  getblas(&mode, unused, unused + 1);
  t.expect_that(mode == 2, "OMP_NUM_THREADS must be above 1");
  product(t);
}

void delegated_product(Trial& t) {
  t.keep_moderate();
  const Shape s = shape(t);
  const int32_t lda = std::max(1, s.m) + t.random.integer(0, 3);
  const int32_t ldb = std::max(1, s.k) + t.random.integer(0, 3);
  const int32_t ldc = std::max(1, s.m) + t.random.integer(0, 3);
  Reals& a = t.reals(matrix(t, s.m, s.k, lda, nan));
  Reals& b = t.reals(matrix(t, s.k, s.n, ldb, nan));
  Reals& c = t.reals(matrix(t, s.m, s.n, ldc, -7));
  const char unread = '?';
  prdgemm(&unread, &unread, &s.m, &s.n, &s.k, &nan, a.data(), &lda, b.data(), &ldb, &t.beta, c.data(), &ldc);
  const bool accumulates = t.beta == 1;
  if (s.k > 0 || !accumulates) {
    expect_product(c, static_cast<std::size_t>(ldc), s, 1, {static_cast<std::size_t>(lda), a.own, false},
                   {static_cast<std::size_t>(ldb), b.own, false}, accumulates ? 1 : 0);
  }
}

void plain_product(Trial& t) {
  t.keep_moderate();
  const Shape s = shape(t);
  Reals& a = t.reals(matrix(t, s.m, s.k, s.m, nan));
  Reals& b = t.reals(matrix(t, s.k, s.n, s.k, nan));
  Reals& c = t.reals(matrix(t, s.m, s.n, s.m, nan));
  eaxmmp(&s.m, &s.k, &s.n, a.data(), b.data(), c.data());
  expect_product(c, static_cast<std::size_t>(s.m), s, 1, {static_cast<std::size_t>(s.m), a.own, false},
                 {static_cast<std::size_t>(s.k), b.own, false}, 0);
}

void congruence(Trial& t) {
  t.keep_moderate();
  const int32_t n = std::max(0, t.n);
  const auto order = static_cast<std::size_t>(n);
  Reals& p = t.reals(order * order);
  Reals& d = t.reals(order);
  Reals& w = t.reals(order * order);
  Reals& r = t.reals(order * order);
  ebhpap(&n, p.data(), d.data(), w.data(), r.data());
  for (std::size_t i = 0; i < order; ++i) {
    for (std::size_t j = 0; j < order; ++j) {
      w[j + i * order] = d[j] * p[i + j * order];
    }
  }
  expect_product(r, order, {n, n, n}, 1, {order, p.own, false}, {order, w.own, false}, 0);
}

void scalar_product(Trial& t) {
  t.keep_moderate();
  Reals& x = t.vector(t.incx);
  Reals& y = t.vector(t.incy);
  const auto element = [&t](Reals& v, int inc) {
    return [&v, inc, &t](std::size_t k) { return v[place(static_cast<int>(k), t.n, inc)]; };
  };
  t.expect(dot(std::max(0, t.n), t.n, element(x, t.incx), element(y, t.incy)),
           eaxscl(&t.n, x.data(), &t.incx, y.data(), &t.incy));
}

}  // namespace

std::vector<Routine> product_routines() {
  // Blocks of 80 rows, 248 deep, of 96 or 1024 columns; chunks of 192 columns.
  const std::vector<int> blocks = {79,  80,  81,  95,  96,  97,  159, 160, 161, 191,  192,  193,
                                   241, 247, 248, 249, 383, 385, 495, 497, 744, 1023, 1024, 1025};
  const std::vector<int> squares = {79, 80, 81, 95, 96, 97, 129};
  const std::vector<int> vectors = {71, 72, 73, 127, 128, 129, 1000, 1025, 4097};
  return {{"eaxscl", scalar_product, vectors}, {"ebhpap", congruence, squares},
          {"eaxmmp", plain_product, blocks},   {"prdgemm", delegated_product, blocks},
          {"eagemm", product, blocks},         {"eagemm.team", product_of_team, blocks}};
}

}  // namespace zortest
