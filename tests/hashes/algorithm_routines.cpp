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
      const std::int32_t one = 1;
      std::int32_t ierr = -7;
      double pivot = 0;
      routine(&n, &one, &n, &tolerance, a.data(), &ierr, &pivot);
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
        const Array d0(std::vector<double>(static_cast<std::size_t>(n), n + 1.5), 0);
        const double tolp = 1e-12;
        double rmin = 10;
        std::int32_t neq = 0, npiv = 0, istat = -1;
        float flop1 = 0, flop2 = 0;
        hash.add(easlff_nt(&n, &m, a.data(), &rmin, d0.data(), &tolp, &tolr, &neq, &npiv, &flop1, &flop2, &istat));
        hash.add(a);
        hash.add(rmin);
        for (const std::int32_t number : {neq, npiv, istat}) {
          hash.add(number);
        }
        hash.add(flop1);
        hash.add(flop2);
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
  void clear_v() {
    for (std::size_t i = 0; i < v.size(); ++i) {
      v[i] = 0.0;
    }
  }
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
    sweep(hash, [&](Eigen& x) {
      std::int32_t ierr = 0;
      hash.add(eaxeig(&x.n, &ord, x.a.data(), x.d.data(), x.v.data(), x.e.data(), &ierr));
    });
  }
}

void xetr(BitHash& hash) {
  sweep(hash, [](Eigen& x) { eaxetr(&x.n, x.a.data(), x.d.data(), x.e.data()); });
}

void xeql(BitHash& hash) {
  sweep(hash, [&hash](Eigen& x) {
    x.clear_v();
    std::int32_t ierr = 0;
    hash.add(eaxeql(&x.n, x.d.data(), x.e.data(), x.v.data(), &ierr));
  });
}

void xeor(BitHash& hash) {
  for (const std::int32_t ord : {1, 2}) {
    sweep(hash, [&ord](Eigen& x) { eaxeor(&ord, &x.n, x.d.data(), x.v.data()); });
  }
}

void xevp(BitHash& hash) {
  sweep(hash, [](Eigen& x) {
    eaxetr(&x.n, x.a.data(), x.d.data(), x.e.data());
    eaxevp(&x.n, x.a.data(), x.v.data());
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
      Integers ipiv(static_cast<std::size_t>(n));
      std::int32_t ierr = 0;
      eaxinv(&mode, &lda, &n, ipiv.data(), &ierr, a.data());
      hash.add(a);
      hash.add(ierr);
    }
  }
}

void xinvs(BitHash& hash) {
  for (const std::int32_t n : sizes) {
    Eigen x(n);
    Array w(square(n));
    Array r(square(n));
    std::int32_t ierr = 0;
    hash.add(eaxinvs(&n, x.a.data(), x.d.data(), x.v.data(), w.data(), r.data(), &ierr));
    hash.add(x.d);
    hash.add(r);
    hash.add(ierr);
  }
}

void xrmc3(BitHash& hash) {
  const std::int32_t m = 13;
  for (const std::int32_t n : sizes) {
    Eigen x(n);
    const std::int32_t ldb = n + 2;
    const Array b = random_array(x.random, ldb * m);
    Array w(square(n));
    Array r(square(n));
    Array t(static_cast<std::size_t>(n * m));
    Array s(square(m));
    std::int32_t ierr = 0;
    hash.add(eaxrmc3(&n, &m, x.a.data(), b.data(), &ldb, x.d.data(), x.v.data(), w.data(), r.data(), t.data(), s.data(),
                     &ierr));
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
