// SPDX-License-Identifier: MIT
#include <cstdlib>

#include "ZORTAVMathKernel.h"
#include "hashes/bit_hash.h"

namespace zortest {
namespace {

// Lengths on both sides of every unrolling, increments of every kind, both alignments to 16 bytes.
template <class Run>
void sweep(Run run) {
  for (const std::int32_t n : {1, 3, 8, 65, 203}) {
    for (const std::int32_t inc : {1, 2, -1, -3}) {
      for (const std::size_t offset : {0U, 1U}) {
        Random random(20260);
        run(random, n, inc, offset);
      }
    }
  }
}

Array strided(Random& random, std::int32_t n, std::int32_t inc, std::size_t offset) {
  return random_array(random, 1 + (n - 1) * std::abs(inc), offset);
}

Integers strided_integers(Random& random, std::int32_t n, std::int32_t inc) {
  Integers values(static_cast<std::size_t>(1 + (n - 1) * std::abs(inc)));
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = random.integer(-1000000, 1000000);
  }
  return values;
}

// A routine of one vector that returns a number.
template <auto routine>
void reduce(BitHash& hash) {
  sweep([&hash](Random& random, std::int32_t n, std::int32_t inc, std::size_t offset) {
    const Array x = strided(random, n, inc, offset);
    hash.add(routine(&n, x.data(), &inc));
  });
}

// A routine of one number and one vector, which it changes.
template <auto routine>
void scale(BitHash& hash) {
  sweep([&hash](Random& random, std::int32_t n, std::int32_t inc, std::size_t offset) {
    Array x = strided(random, n, inc, offset);
    const double alpha = 0.7;
    routine(&n, &alpha, x.data(), &inc);
    hash.add(x);
  });
}

// A routine that takes x to y, their increments unlike.
template <auto routine>
void move(BitHash& hash) {
  sweep([&hash](Random& random, std::int32_t n, std::int32_t inc, std::size_t offset) {
    const std::int32_t incy = inc == 1 ? 1 : -inc;
    Array x = strided(random, n, inc, offset);
    Array y = strided(random, n, incy, 1 - offset);
    routine(&n, x.data(), &inc, y.data(), &incy);
    hash.add(x);
    hash.add(y);
  });
}

void daxpy(BitHash& hash) {
  sweep([&hash](Random& random, std::int32_t n, std::int32_t inc, std::size_t offset) {
    const Array x = strided(random, n, inc, offset);
    Array y = strided(random, n, inc, 0);
    const double alpha = -1.3;
    e_daxpy(&n, &alpha, x.data(), &inc, y.data(), &inc);
    hash.add(y);
  });
}

void dzero(BitHash& hash) {
  sweep([&hash](Random& random, std::int32_t n, std::int32_t inc, std::size_t offset) {
    Array x = strided(random, n, inc, offset);
    e_dzero(&n, x.data(), &inc);
    hash.add(x);
  });
}

void izero(BitHash& hash) {
  sweep([&hash](Random& random, std::int32_t n, std::int32_t inc, std::size_t) {
    Integers x = strided_integers(random, n, inc);
    e_izero(&n, x.data(), &inc);
    hash.add(x);
  });
}

void icopy(BitHash& hash) {
  sweep([&hash](Random& random, std::int32_t n, std::int32_t inc, std::size_t) {
    const std::int32_t incy = -inc;
    const Integers x = strided_integers(random, n, inc);
    Integers y = strided_integers(random, n, incy);
    e_icopy(&n, x.data(), &inc, y.data(), &incy);
    hash.add(y);
  });
}

void dnrm2(BitHash& hash) {
  reduce<e_dnrm2>(hash);
  for (const double size : {1e-300, 1e300}) {
    Random random(3);
    const Array x(random.vector(203, -size, size), 0);
    const std::int32_t n = 203;
    const std::int32_t one = 1;
    hash.add(e_dnrm2(&n, x.data(), &one));
  }
}

void drotg(BitHash& hash) {
  Random random(4);
  for (int i = 0; i < 200; ++i) {
    double a = random.uniform();
    double b = i % 7 == 0 ? 0.0 : random.uniform();
    double c = 0;
    double s = 0;
    e_drotg(&a, &b, &c, &s);
    for (const double number : {a, b, c, s}) {
      hash.add(number);
    }
  }
}

// A sparse vector and a dense one of five times its length; no index comes twice.
struct Sparse {
  explicit Sparse(std::int32_t length, Random& random)
      : n(length), x(random_array(random, n)), index(static_cast<std::size_t>(n)), y(random_array(random, 5 * n)) {
    for (std::int32_t i = 0; i < n; ++i) {
      index[static_cast<std::size_t>(i)] = 5 * (n - 1 - i) + random.integer(1, 5);
    }
  }
  std::int32_t n;
  Array x;
  Integers index;
  Array y;
};

template <class Run>
void sweep_sparse(Run run) {
  for (const std::int32_t n : {1, 3, 8, 65, 203}) {
    Random random(5);
    Sparse s(n, random);
    run(s);
  }
}

void daxpyi(BitHash& hash) {
  sweep_sparse([&hash](Sparse& s) {
    const double alpha = 0.3;
    e_daxpyi(&s.n, &alpha, s.x.data(), s.index.data(), s.y.data());
    hash.add(s.y);
  });
}

void ddoti(BitHash& hash) {
  sweep_sparse([&hash](Sparse& s) { hash.add(e_ddoti(&s.n, s.x.data(), s.index.data(), s.y.data())); });
}

void dgthr(BitHash& hash) {
  sweep_sparse([&hash](Sparse& s) {
    e_dgthr(&s.n, s.y.data(), s.x.data(), s.index.data());
    hash.add(s.x);
  });
}

void dsctr(BitHash& hash) {
  sweep_sparse([&hash](Sparse& s) {
    e_dsctr(&s.n, s.x.data(), s.index.data(), s.y.data());
    hash.add(s.y);
  });
}

}  // namespace

std::vector<Routine> level1_routines() {
  return {{"e_dzero", dzero},
          {"e_izero", izero},
          {"e_dcopy", move<e_dcopy>},
          {"e_icopy", icopy},
          {"e_dswap", move<e_dswap>},
          {"e_dscal", scale<e_dscal>},
          {"drscl", scale<drscl>},
          {"e_daxpy", daxpy},
          {"e_dasum", reduce<e_dasum>},
          {"damax", reduce<damax>},
          {"e_idamax", reduce<e_idamax>},
          {"e_dnrm2", dnrm2},
          {"e_drotg", drotg},
          {"e_daxpyi", daxpyi},
          {"e_ddoti", ddoti},
          {"e_dgthr", dgthr},
          {"e_dsctr", dsctr}};
}

}  // namespace zortest
