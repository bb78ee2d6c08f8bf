// SPDX-License-Identifier: MIT
// Factorization, front elimination, eigen-solution, inversion.
#include "ZORTAVMathKernel.h"
#include "hashes/bit_hash.h"

namespace zortest {
namespace {

constexpr std::int32_t sizes[] = {1, 2, 9, 67, 130};

std::size_t square(std::int32_t n) {
  return static_cast<std::size_t>(n) * static_cast<std::size_t>(n);
}

template <auto routine>
void factorization(BitHash& hash) {
  for (const std::int32_t n : sizes) {
    for (const double tolerance : {1e-12, n + 1.0}) {  // the second refuses a pivot somewhere
      Random random(22);
      Array a = packed_triangle(random, n, true);
      std::int32_t ierr = -7;
      double pivot = 0;
      by_address(routine, n, 1, n, tolerance, a, ierr, pivot);
      hash.add(a);
      hash.add(ierr);
      hash.add(pivot);
    }
  }
}

void slff_nt(BitHash& hash) {
  for (const std::int32_t n : sizes) {
    for (const std::int32_t m : {n, n / 2, n - n / 5}) {
      for (const double tolr : {1e-12, 0.999}) {  // the second refuses a pivot somewhere
        Random random(23);
        Array a = packed_triangle(random, n, false);
        const std::vector<double> d0(static_cast<std::size_t>(n), n + 1.5);
        double rmin = 10;
        std::int32_t counts[] = {0, 0, -1};  // neq, npiv, istat
        float flops[] = {0, 0};
        hash.add(
            by_address(easlff_nt, n, m, a, rmin, d0, 1e-12, tolr, counts[0], counts[1], flops[0], flops[1], counts[2]));
        hash.add(a);
        hash.add(rmin);
        hash.add(counts);
        hash.add(flops);
      }
    }
  }
}

// A symmetric matrix and the arrays of its eigen-solution.
struct Eigen {
  explicit Eigen(std::int32_t order)
      : n(order),
        random(24),
        a(random_array(random, n * (n + 1) / 2)),
        d(random_array(random, n)),
        v(random_array(random, n * n)),
        e(random_array(random, n)) {}
  std::int32_t n;
  Random random;
  Array a, d, v, e;
};

template <class Run>
void sweep(BitHash& hash, Run run) {
  for (const std::int32_t n : sizes) {
    Eigen x(n);
    run(x);
    hash.add(x.a);
    hash.add(x.d);
    hash.add(x.v);
    hash.add(x.e);
  }
}

void xeig(BitHash& hash) {
  for (const std::int32_t ord : {1, 2}) {
    sweep(hash, [&](Eigen& x) { hash.add(by_address(eaxeig, x.n, ord, x.a, x.d, x.v, x.e, std::int32_t{0})); });
  }
}

void xetr(BitHash& hash) {
  sweep(hash, [](Eigen& x) { by_address(eaxetr, x.n, x.a, x.d, x.e); });
}

void xeql(BitHash& hash) {
  sweep(hash, [&hash](Eigen& x) {
    std::fill_n(x.v.data(), x.v.size(), 0.0);
    hash.add(by_address(eaxeql, x.n, x.d, x.e, x.v, std::int32_t{0}));
  });
}

void xeor(BitHash& hash) {
  for (const std::int32_t ord : {1, 2}) {
    sweep(hash, [&ord](Eigen& x) { by_address(eaxeor, ord, x.n, x.d, x.v); });
  }
}

void xevp(BitHash& hash) {
  sweep(hash, [](Eigen& x) {
    by_address(eaxetr, x.n, x.a, x.d, x.e);
    by_address(eaxevp, x.n, x.a, x.v);
  });
}

void xinv(BitHash& hash) {
  for (const std::int32_t mode : {1, 2, 3}) {
    for (const std::int32_t n : sizes) {
      Random random(25);
      const std::int32_t lda = n + 1;
      Array a = random_array(random, lda * n);
      const auto at = [lda](std::int32_t i, std::int32_t j) { return static_cast<std::size_t>(i + j * lda); };
      for (std::int32_t j = 0; mode != 1 && j < n; ++j) {
        a[at(j, j)] = n + random.uniform(1.0, 2.0);
        for (std::int32_t i = 0; i < j; ++i) {
          a[at(j, i)] = a[at(i, j)];
        }
      }
      std::int32_t ierr = 0;
      by_address(eaxinv, mode, lda, n, Integers(static_cast<std::size_t>(n)), ierr, a);
      hash.add(a);
      hash.add(ierr);
    }
  }
}

void xinvs(BitHash& hash) {
  for (const std::int32_t n : sizes) {
    Eigen x(n);
    Array r(square(n));
    std::int32_t ierr = 0;
    hash.add(by_address(eaxinvs, n, x.a, x.d, x.v, Array(square(n)), r, ierr));
    hash.add(x.d);
    hash.add(r);
    hash.add(ierr);
  }
}

void xrmc3(BitHash& hash) {
  const std::int32_t m = 13;
  for (const std::int32_t n : sizes) {
    Eigen x(n);
    const Array b = random_array(x.random, (n + 2) * m);
    Array t(static_cast<std::size_t>(n * m));
    Array s(square(m));
    std::int32_t ierr = 0;
    hash.add(by_address(eaxrmc3, n, m, x.a, b, n + 2, x.d, x.v, Array(square(n)), Array(square(n)), t, s, ierr));
    hash.add(t);
    hash.add(s);
    hash.add(ierr);
  }
}

}  // namespace

std::vector<Routine> algorithm_routines() {
  return {{"eaxfch", factorization<eaxfch>},
          {"eaxfch2", factorization<eaxfch2>},
          {"easlff_nt", slff_nt},
          {"eaxeig", xeig},
          {"eaxetr", xetr},
          {"eaxeql", xeql},
          {"eaxeor", xeor},
          {"eaxevp", xevp},
          {"eaxinv", xinv},
          {"eaxinvs", xinvs},
          {"eaxrmc3", xrmc3}};
}

}  // namespace zortest
