// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "ZORTAVEigenSolver.h"
#include "ZORTAVFactorization.h"
#include "ZORTAVInversion.h"
#include "algorithms/eigen_oracle.h"
#include "algorithms/factor_oracle.h"
#include "algorithms/front_oracle.h"
#include "algorithms/inversion_oracle.h"
#include "long/differential/trial.h"
#include "long/eigen_measures.h"

namespace zortest {
namespace {

using oracle::packed;
using oracle::size;

constexpr std::int32_t unwritten = -77;

// The rows n1..n2 of a triangle whose earlier rows are factored, with a pivot that fails or is no number in some cases.
template <auto routine, bool has_result>
void cholesky(Trial& t) {
  const auto n = static_cast<std::size_t>(std::max(1, t.n));
  factor::Numbers matrix = factor::positive_definite(t.random, n);
  const auto n1 = static_cast<std::size_t>(t.random.integer(1, static_cast<int>(t.random.integer(0, 1) == 0 ? 1 : n)));
  const auto n2 = static_cast<std::size_t>(t.n < 1 ? 0 : t.random.integer(static_cast<int>(n1) - 1, t.n));
  factor::in_stated_order(matrix, 1, n1 - 1, 0);
  if (t.random.integer(0, 2) == 0) {
    const auto row = static_cast<std::size_t>(t.random.integer(1, static_cast<int>(n)));
    matrix[factor::place(row, row)] = t.one_of<double>({-1, 0, nan, inf});
  }
  const double tol = t.one_of<double>({0, 0, 1e-6, -2, nan});
  const auto first = static_cast<int32_t>(n1);
  const auto last = static_cast<int32_t>(n2);
  Reals& a = t.reals(matrix);
  Integer& ierr = t.integers({unwritten});
  Reals& piv = t.real(777);
  if constexpr (has_result) {
    const int result = routine(&unwritten, &first, &last, &tol, a.data(), ierr.data(), piv.data());
    t.expect(ierr.result(0) == 0 ? 0 : 1, result);
  } else {
    routine(&unwritten, &first, &last, &tol, a.data(), ierr.data(), piv.data());
  }
  const factor::Outcome expected = factor::in_stated_order(a.own, n1, n2, tol);
  ierr[0] = expected.ierr;
  piv[0] = expected.piv;
}

float with_operations(float before, double count) {
  return before + static_cast<float>(count);
}

void front_elimination(Trial& t) {
  using front::Front;
  const auto n = static_cast<std::size_t>(std::max(1, t.n));
  const auto m = static_cast<std::size_t>(t.n < 1 ? 0 : t.random.integer(0, t.n));
  Front f{.n = n, .m = m, .a = t.random.vector(n * (n + 1) / 2)};
  f.neq = t.random.integer(0, 5);
  f.npiv = t.random.integer(0, 9);
  f.d0.assign(n + 6, 1e300);
  f.tolp = t.one_of<double>({1e-9, 1e-9, 1e-9, 0, nan});
  f.tolr = t.one_of<double>({1e-9, 1e-9, 0, -1e6, nan});
  f.rmin = t.one_of<double>({1e30, 0.9, -1, nan});
  f.flop1 = static_cast<float>(t.random.uniform(0, 1e6));
  f.flop2 = static_cast<float>(t.random.uniform(0, 1e6));
  const bool definite = t.random.integer(0, 2) != 0;
  for (std::size_t j = 1; j <= n; ++j) {
    f.at(j, j) += (definite || t.random.integer(0, 1) == 0 ? 1.5 : -1.5) * (std::sqrt(static_cast<double>(n)) + 1);
    f.initial(j) = f.at(j, j);
  }
  if (t.random.integer(0, 2) == 0) {
    const auto q = static_cast<std::size_t>(t.random.integer(1, static_cast<int>(n)));
    (t.random.integer(0, 1) == 0 ? f.at(q, q) : f.initial(q)) = t.one_of<double>({0, -0.0, nan, inf, 1e-10, 1e15});
  }
  if (t.random.integer(0, 5) == 0) {
    f.a[static_cast<std::size_t>(t.random.integer(0, static_cast<int>(f.a.size()) - 1))] = t.one_of<double>({nan, inf});
  }
  Front expected = f;
  expected.eliminate_one_by_one();
  const auto nn = static_cast<double>(n);
  const auto mm = static_cast<double>(m);
  const double p = mm * (mm + 1);
  expected.flop1 = with_operations(
      f.flop1, 2 * mm * nn - mm * mm + (nn * nn + 2) * mm - (2 * nn + 1) * p / 2 + (2 * mm + 1) * p / 6);
  expected.flop2 = with_operations(f.flop2, (nn * mm - p / 2) * 4 + mm);

  Reals& a = t.reals(f.a);
  Reals& d0 = t.reals(f.d0);
  Integer& counts = t.integers({f.neq, f.npiv, unwritten});
  Reals& rmin = t.real(f.rmin);
  const auto rows = static_cast<int32_t>(n);
  const auto columns = static_cast<int32_t>(m);
  const int32_t result = easlff_nt(&rows, &columns, a.data(), rmin.data(), d0.data(), &f.tolp, &f.tolr, counts.data(),
                                   counts.data() + 1, &f.flop1, &f.flop2, counts.data() + 2);
  t.expect(expected.result, result);
  t.expect(expected.flop1, f.flop1);
  t.expect(expected.flop2, f.flop2);
  a.own = expected.a;
  rmin[0] = expected.rmin;
  counts.own = {expected.neq, expected.npiv, expected.istat};
}

// Full symmetric, with zeros in some cases; with a column of zeros now and then.
FullMatrix symmetric_matrix(Trial& t, int n) {
  t.keep_finite();
  const std::vector<double> triangle = t.numbers(packed(n));
  const int empty = t.random.integer(0, 4) == 0 ? t.random.integer(1, n) : 0;
  FullMatrix a(n);
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= i; ++j) {
      const double x = i == empty || j == empty ? 0 : triangle[packed(i - 1) + size(j - 1)];
      a(i, j) = a(j, i) = x;
    }
  }
  return a;
}

// As eaxetr leaves it: T = H(3)···H(n)·A·H(n)···H(3), H(i) = I − u·uᵀ/h.
void reduction(Trial& t) {
  const int n = std::max(1, t.n);
  const FullMatrix a = symmetric_matrix(t, n);
  Guarded<double> reflectors(a.triangle(), size(t.random.integer(0, 7)));
  Guarded<double> d(size(n), size(t.random.integer(0, 7)));
  Guarded<double> e(size(n), size(t.random.integer(0, 7)));
  eaxetr(&n, reflectors.data(), d.data(), e.data());
  t.expect_that(reflectors.intact() && d.intact() && e.intact(), "written beyond an array's ends");
  t.expect(0, e[0]);
  const FullMatrix back = reduced_matrix_restored(n, reflectors.values(), d.values(), e.values());
  const long double error = largest_difference(a, back);
  t.expect_that(error <= 10 * n * 0x1p-52L * a.norm(), "Q·T·Qᵀ is not A: " + std::to_string(error / a.norm()));
}

void iteration(Trial& t) {
  t.keep_moderate();
  const int n = std::max(1, t.n);
  std::vector<double> below = t.numbers(size(n));
  if (t.random.integer(0, 1) == 0) {  // some planes split the matrix
    for (std::size_t i = 0; i < below.size(); i += 1 + i % 7) {
      below[i] *= t.one_of<double>({0, 1e-17});
    }
  }
  Reals& d = t.reals(size(n));
  Reals& e = t.reals(below);
  Reals& v = t.reals(size(n) * size(n));
  Integer& ierr = t.integers({unwritten});
  const int32_t result = eaxeql(&n, d.data(), e.data(), v.data(), ierr.data());
  const int failed = oracle::iterate(n, d.own, e.own, v.own);
  t.expect(failed == 0 ? 0 : 1, result);
  ierr[0] = failed == 0 ? unwritten : failed;
}

void ordering(Trial& t) {
  const int32_t ord = t.random.integer(-1, 2);
  const auto n = size(std::max(0, t.n));
  std::vector<double> values = t.numbers(n);
  if (t.random.integer(0, 1) == 0) {  // with ties
    for (double& x : values) {
      x = std::isfinite(x) ? std::round(3 * std::remainder(x, 1)) : x;
    }
  }
  Reals& d = t.reals(values);
  Reals& v = t.reals(n * n);
  eaxeor(&ord, &t.n, d.data(), v.data());
  for (std::size_t i = 0; i + 1 < n; ++i) {
    std::size_t best = i;
    for (std::size_t k = i + 1; k < n; ++k) {
      if (ord == 1 ? d[k] < d[best] : std::fabs(d[k]) > std::fabs(d[best])) {
        best = k;
      }
    }
    std::swap(d[i], d[best]);
    for (std::size_t k = 0; k < n && best != i; ++k) {
      std::swap(v[k + i * n], v[k + best * n]);
    }
  }
}

void transformation(Trial& t) {
  const int n = std::max(0, t.n);
  t.keep_finite();
  std::vector<double> a = symmetric_matrix(t, std::max(1, n)).triangle();
  std::vector<double> d(size(n) + 1);
  std::vector<double> e(size(n) + 1);
  if (n > 0) {
    eaxetr(&n, a.data(), d.data(), e.data());  // reflectors of true length
  }
  Reals& reflectors = t.reals(a);
  Reals& v = t.reals(size(n) * size(n));
  eaxevp(&n, reflectors.data(), v.data());
  for (int j = 0; j < n; ++j) {
    std::vector<long double> column(v.own.begin() + j * n, v.own.begin() + (j + 1) * n);
    long double length = 0;
    for (const long double x : column) {
      length += x * x;
    }
    reflect_all(n, a, column);
    for (int k = 0; n > 2 && k < n - 1; ++k) {  // no reflector reaches the last row
      v.expect_within(size(k + j * n), {column[size(k)], 10 * n * 0x1p-52L * std::sqrt(length)});
    }
  }
}

void eigen_solution(Trial& t) {
  const int n = std::max(1, t.n);
  const FullMatrix a = symmetric_matrix(t, n);
  const int32_t ord = t.random.integer(0, 2);
  Guarded<double> triangle(a.triangle(), size(t.random.integer(0, 7)));
  Guarded<double> d(size(n), size(t.random.integer(0, 7)));
  Guarded<double> v(size(n) * size(n), size(t.random.integer(0, 7)));
  Guarded<double> e(size(n), size(t.random.integer(0, 7)));
  int32_t ierr = unwritten;
  t.expect(0, eaxeig(&n, &ord, triangle.data(), d.data(), v.data(), e.data(), &ierr));
  t.expect(unwritten, ierr);
  t.expect_that(triangle.intact() && d.intact() && v.intact() && e.intact(), "written beyond an array's ends");
  const EigenMeasures errors = measure(a, d.values(), v.values());
  t.expect_that(errors.orthogonality <= 50 * n * 0x1p-52L,
                "not orthogonal: " + std::to_string(errors.orthogonality / 0x1p-52L) + " eps");
  t.expect_that(errors.residual <= 50 * n * 0x1p-52L * a.norm(),
                "A·V is not V·D: " + std::to_string(errors.residual / 0x1p-52L) + " eps");
  for (std::size_t i = 1; i < d.size(); ++i) {
    t.expect_that(ord == 1 ? d[i - 1] <= d[i] : std::fabs(d[i - 1]) >= std::fabs(d[i]), "not in order");
  }
}

void inversion(Trial& t) {
  const int n = std::max(0, t.n);
  const int32_t mode = t.one_of<int>({1, 1, 2, 3, -5});
  const bool general = mode == 1;
  Matrix a = random_matrix(t.random, n, std::max(1, n) + t.random.integer(0, 3), !general);
  const int kind = t.random.integer(0, 5);
  for (int j = 1; j <= n && kind <= 1; ++j) {
    for (int i = 1; i <= j; ++i) {
      if (kind == 0) {  // many ties, zeros, and singular matrices
        a(i, j) = t.random.integer(-2, 2);
        a(j, i) = general ? t.random.integer(-2, 2) : a(i, j);
      } else if (t.random.integer(0, 2 * n) == 0) {
        a(i, j) = a(j, i) = t.one_of<double>({0.0, -0.0, nan, inf, 1e-9});
      }
    }
  }
  Reals& x = t.reals(a.a);
  Integer& ierr = t.integers({7});
  Guarded<std::int32_t> ipiv(size(n));
  const int32_t lda = a.lda;
  eaxinv(&mode, &lda, &t.n, ipiv.data(), ierr.data(), x.data());
  t.expect_that(ipiv.intact(), "ipiv is written beyond its ends");
  const bool tested = mode != 1 && mode != 2;
  if (general) {
    invert_general(a);
  }
  const bool accepted = general || invert_symmetric(a, tested);
  ierr[0] = tested ? (accepted ? 0 : 1) : 7;
  x.own = a.a;
}

// The arrays of both inverses through the eigen-solution.
struct Spectral {
  int n;
  Matrix a;
  Guarded<double> triangle, d, v, w, r;
  int32_t ierr = unwritten;
  Spectral(Trial& t, int order)
      : n(order),
        a(indefinite(t, order)),
        triangle(lower(a), 1),
        d(size(n), 2),
        v(size(n * n), 3),
        w(size(n * n), 4),
        r(size(n * n), size(t.random.integer(0, 7))) {}

  // R = V·diag(1/d)·Vᵀ, and the inverse of A.
  void check_inverse(Trial& t) {
    t.expect(0, ierr);
    t.expect_that(triangle.intact() && d.intact() && v.intact() && w.intact() && r.intact(),
                  "written beyond an array's ends");
    t.expect_that(identity_error(a, r.values(), n) <= 100 * n * 0x1p-52, "A·R is not the identity");
    for (std::size_t i = 0; i < size(n); ++i) {
      for (std::size_t j = 0; j < size(n); ++j) {
        long double sum = 0;
        long double magnitude = 0;
        for (std::size_t k = 0; k < size(n); ++k) {
          const long double term = static_cast<long double>(v[i + k * size(n)]) * v[j + k * size(n)] / d[k];
          sum += term;
          magnitude += std::fabs(term);
        }
        t.expect(sum_of(n + 3, sum, magnitude), r[i + j * size(n)]);
      }
    }
  }

 private:
  static Matrix indefinite(Trial& t, int n) {
    Matrix a = random_matrix(t.random, n, std::max(1, n), true);
    for (int i = 1; i <= n; ++i) {
      a(i, i) = t.random.integer(0, 1) == 0 ? a(i, i) : -a(i, i);
    }
    return a;
  }
  static std::vector<double> lower(const Matrix& a) {
    std::vector<double> packed_rows;
    for (int i = 1; i <= a.n; ++i) {
      for (int j = 1; j <= i; ++j) {
        packed_rows.push_back(a(i, j));
      }
    }
    return packed_rows;
  }
};

void spectral_inverse(Trial& t) {
  Spectral s(t, std::max(0, t.n));
  const int result = eaxinvs(&t.n, s.triangle.data(), s.d.data(), s.v.data(), s.w.data(), s.r.data(), &s.ierr);
  t.expect(0, result);
  s.check_inverse(t);
}

void reduced_matrix(Trial& t) {
  t.keep_finite();
  Spectral s(t, std::max(1, t.n));
  const int32_t m = t.random.integer(0, 12);
  const int32_t ldb = s.n + t.random.integer(0, 3);
  Reals& b = t.reals(size(ldb * m));
  Guarded<double> tt(size(s.n * m), 5);
  Guarded<double> ss(size(m * m), 6);
  const int result = eaxrmc3(&s.n, &m, s.triangle.data(), b.data(), &ldb, s.d.data(), s.v.data(), s.w.data(),
                             s.r.data(), tt.data(), ss.data(), &s.ierr);
  t.expect(0, result);
  s.check_inverse(t);
  t.expect_that(tt.intact() && ss.intact(), "written beyond an array's ends");
  const auto product = [&](const double* x, std::size_t step, const double* y) {
    return dot(s.n + 2, s.n, Line{x, step}, Line{y, 1});
  };
  for (std::size_t j = 0; j < size(m); ++j) {
    const double* const bj = b.own.data() + j * size(ldb);
    const double* const tj = tt.data() + j * size(s.n);
    for (std::size_t i = 0; i < size(s.n); ++i) {
      t.expect(product(s.r.data() + i, size(s.n), bj), tj[i]);
    }
    for (std::size_t i = 0; i <= j; ++i) {
      t.expect(product(b.own.data() + i * size(ldb), 1, tj), ss[i + j * size(m)]);
      t.expect(ss[i + j * size(m)], ss[j + i * size(m)]);
    }
  }
}

}  // namespace

std::vector<Routine> algorithm_routines() {
  const std::vector<int> factors = {71, 72, 73, 96, 97, 127, 128, 129, 144, 145};
  const std::vector<int> fronts = {71, 72, 73, 96, 97, 98, 99, 127, 128, 129, 144, 145, 146, 193};
  const std::vector<int> eigen = {71, 72, 73, 79, 80, 96, 97, 127, 128, 129};
  const std::vector<int> inverses = {79, 80, 95, 96, 97, 127, 128, 143, 144, 145, 151};
  return {{"eaxfch2", cholesky<eaxfch2, false>, factors},
          {"eaxfch", cholesky<eaxfch, true>, factors},
          {"easlff_nt", front_elimination, fronts},
          {"eaxetr", reduction, eigen},
          {"eaxeql", iteration, eigen},
          {"eaxeor", ordering, {100, 127}},
          {"eaxevp", transformation, eigen},
          {"eaxeig", eigen_solution, {71, 72, 73, 80, 97, 128}},
          {"eaxinv", inversion, inverses},
          {"eaxinvs", spectral_inverse, {71, 80, 81, 97}},
          {"eaxrmc3", reduced_matrix, {71, 80, 81, 97}}};
}

}  // namespace zortest
