// SPDX-License-Identifier: MIT
#include <cmath>
#include <cstdint>
#include <utility>

#include "ZORTAVVectorKernels.h"
#include "long/differential/trial.h"
#include "vector_kernels/level1/norm_oracle.h"

namespace zortest {
namespace {

std::size_t address_in_pair(const double* x) {
  return reinterpret_cast<std::uintptr_t>(x) % 16;
}

// visit(x(i), y(i)) for i = 1..n, both walked backwards at a negative increment.
template <class T, class Visit>
void pairs(const Trial& t, Twin<T>& x, Twin<T>& y, Visit visit) {
  for (int i = 0; i < t.n; ++i) {
    visit(x[place(i, t.n, t.incx)], y[place(i, t.n, t.incy)]);
  }
}

// visit(x(i)), always from the first element on.
template <class Visit>
void forward(const Trial& t, Reals& x, Visit visit) {
  for (int i = 0; i < t.n; ++i) {
    visit(x[place(i, t.n, std::abs(t.incx))]);
  }
}

Reals& real_vector(Trial& t, int inc) {
  return t.vector(inc);
}
Integer& integer_vector(Trial& t, int inc) {
  std::vector<std::int32_t> v(reach(t.n, inc));
  for (std::int32_t& x : v) {
    x = t.random.integer(INT32_MIN / 2, INT32_MAX / 2);
  }
  return t.integers(v);
}

template <auto routine, auto vector>
void zero(Trial& t) {
  t.n = t.incx == 1 && t.n < 0 ? 0 : t.n;  // a negative n must not be passed with a unit increment
  auto& x = vector(t, t.incx);
  routine(&t.n, x.data(), &t.incx);
  for (int i = 0; i < t.n; ++i) {
    x[place(i, t.n, t.incx)] = 0;
  }
}

template <auto routine, auto vector>
void copy(Trial& t) {
  auto& x = vector(t, t.incx);
  auto& y = vector(t, t.incy);
  routine(&t.n, x.data(), &t.incx, y.data(), &t.incy);
  pairs(t, x, y, [](auto xi, auto& yi) { yi = xi; });
}

void dscal(Trial& t) {
  Reals& x = t.vector(t.incx);
  e_dscal(&t.n, &t.alpha, x.data(), &t.incx);
  forward(t, x, [&](double& xi) { xi = t.alpha * xi; });
}

void scale_by_reciprocal(Trial& t) {
  Reals& x = t.vector(t.incx);
  drscl(&t.n, &t.alpha, x.data(), &t.incx);
  if (t.alpha != 0 && t.alpha != 1) {
    forward(t, x, [factor = 1 / t.alpha](double& xi) { xi = factor * xi; });
  }
}

void daxpy(Trial& t) {
  Reals& x = t.vector(t.incx);
  Reals& y = t.vector(t.incy);
  e_daxpy(&t.n, &t.alpha, x.data(), &t.incx, y.data(), &t.incy);
  if (t.alpha != 0) {
    pairs(t, x, y, [&](double xi, double& yi) { yi = yi + t.alpha * xi; });
  }
}

void dswap(Trial& t) {
  Reals& x = t.vector(t.incx);
  Reals& y = t.vector(t.incy);
  e_dswap(&t.n, x.data(), &t.incx, y.data(), &t.incy);
  pairs(t, x, y, [](double& xi, double& yi) { std::swap(xi, yi); });
}

void dasum(Trial& t) {
  Reals& x = t.vector(t.incx);
  std::vector<double> terms;
  forward(t, x, [&](double xi) { terms.push_back(std::fabs(xi)); });
  const int alone = t.incx == 1 ? peel(address_in_pair(x.data())) : t.incx == 0 ? no_groups : 0;
  t.expect(sum_in_order(terms, alone), e_dasum(&t.n, x.data(), &t.incx));
}

// Which element a NaN leads to is open: there is none.
Reals& ordered_numbers(Trial& t) {
  std::vector<double> v = t.numbers(reach(t.n, t.incx));
  const bool ties = t.random.integer(0, 1) == 0;
  for (double& x : v) {
    x = x != x ? inf : ties && std::isfinite(x) ? std::round(3 * std::remainder(x, 1)) : x;
  }
  return t.reals(v);
}

void largest(Trial& t) {
  Reals& x = ordered_numbers(t);
  double size = 0;
  forward(t, x, [&](double xi) { size = std::fabs(xi) >= size ? std::fabs(xi) : size; });
  t.expect(size, damax(&t.n, x.data(), &t.incx));
}

void idamax(Trial& t) {
  Reals& x = ordered_numbers(t);
  int index = t.n < 1 ? 0 : 1;
  double size = t.n < 1 ? 0 : std::fabs(x[0]);
  int i = 0;
  forward(t, x, [&](double xi) {
    ++i;
    if (!(std::fabs(xi) <= size)) {
      index = i;
      size = std::fabs(xi);
    }
  });
  t.expect(index, e_idamax(&t.n, x.data(), &t.incx));
}

void dnrm2(Trial& t) {
  std::vector<double> v = t.numbers(reach(t.n, t.incx));
  const double scale = t.one_of<double>({1, 1, 1e-17, 1e17, 1e-300, 1e280});
  for (double& x : v) {
    x *= scale;
  }
  Reals& x = t.reals(v);
  t.expect(norm(walked(v, t.n, t.incx)), e_dnrm2(&t.n, x.data(), &t.incx));
}

void drotg(Trial& t) {
  const std::vector<double> given = t.numbers(2);
  const bool equal = t.random.integer(0, 9) == 0;
  const double a = given[0];
  const double b = equal ? -a : given[1];
  Reals& r = t.reals({a, b, 7, 7});
  e_drotg(r.data(), r.data() + 1, r.data() + 2, r.data() + 3);
  if (std::fabs(a) > std::fabs(b)) {
    const double u = a + a;
    const double v = b / u;
    r[0] = std::sqrt(0.25 + v * v) * u;
    r[2] = a / r[0];
    r[1] = r[3] = v * (r[2] + r[2]);
  } else if (b == 0) {
    r[2] = 1;
    r[3] = 0;
  } else {
    const double u = b + b;
    const double v = a / u;
    r[0] = std::sqrt(0.25 + v * v) * u;
    r[3] = b / r[0];
    r[2] = v * (r[3] + r[3]);
    r[1] = r[2] != 0 ? 1 / r[2] : 1;
  }
}

struct Sparse {
  Reals& x;
  Integer& indx;
  Reals& y;
};

// Indices into a full vector that is now shorter, now longer than the list, so that they repeat in some cases.
Sparse sparse_vectors(Trial& t) {
  const auto count = static_cast<std::size_t>(std::max(t.n, 0));
  const int full = t.random.integer(1, 100);
  std::vector<std::int32_t> places(count);
  for (std::int32_t& k : places) {
    k = t.random.integer(1, full);
  }
  Reals& x = t.reals(count);
  Integer& indx = t.integers(places);
  return {x, indx, t.reals(static_cast<std::size_t>(full))};
}

template <class Visit>
void scattered(Sparse& v, Visit visit) {
  for (std::size_t i = 0; i < v.indx.own.size(); ++i) {
    visit(v.x[i], v.y[static_cast<std::size_t>(v.indx[i] - 1)]);
  }
}

void daxpyi(Trial& t) {
  Sparse v = sparse_vectors(t);
  e_daxpyi(&t.n, &t.alpha, v.x.data(), v.indx.data(), v.y.data());
  if (t.alpha != 0) {
    scattered(v, [&](double xi, double& yi) { yi = yi + t.alpha * xi; });
  }
}

void ddoti(Trial& t) {
  Sparse v = sparse_vectors(t);
  std::vector<double> terms;
  scattered(v, [&](double xi, double yi) { terms.push_back(xi * yi); });
  const double expected = sum_in_order(terms, peel(address_in_pair(v.x.data())));
  t.expect(expected, e_ddoti(&t.n, v.x.data(), v.indx.data(), v.y.data()));
}

void dgthr(Trial& t) {
  Sparse v = sparse_vectors(t);
  e_dgthr(&t.n, v.y.data(), v.x.data(), v.indx.data());
  scattered(v, [](double& xi, double yi) { xi = yi; });
}

void dsctr(Trial& t) {
  Sparse v = sparse_vectors(t);
  e_dsctr(&t.n, v.x.data(), v.indx.data(), v.y.data());
  scattered(v, [](double xi, double& yi) { yi = xi; });
}

}  // namespace

std::vector<Routine> level1_routines() {
  // Multiples of the widest group, the blocks of 512 in which the largest element is looked for.
  const std::vector<int> around = {71,  72,  73,  79,  80,  127, 128, 129,  255,  256,  257,
                                   511, 512, 513, 514, 520, 521, 999, 1024, 1025, 1026, 4097};
  return {{"e_dzero", zero<e_dzero, real_vector>, around},
          {"e_izero", zero<e_izero, integer_vector>, around},
          {"e_dcopy", copy<e_dcopy, real_vector>, around},
          {"e_icopy", copy<e_icopy, integer_vector>, around},
          {"e_dscal", dscal, around},
          {"drscl", scale_by_reciprocal, around},
          {"e_daxpy", daxpy, around},
          {"e_dswap", dswap, around},
          {"e_dasum", dasum, around},
          {"damax", largest, around},
          {"e_idamax", idamax, around},
          {"e_dnrm2", dnrm2, around},
          {"e_drotg", drotg, {}},
          {"e_daxpyi", daxpyi, around},
          {"e_ddoti", ddoti, around},
          {"e_dgthr", dgthr, around},
          {"e_dsctr", dsctr, around}};
}

}  // namespace zortest
