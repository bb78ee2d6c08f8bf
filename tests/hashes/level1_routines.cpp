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

template <class T = double>
Guarded<T> strided(Random& random, std::int32_t n, std::int32_t inc, std::size_t offset) {
  const std::int32_t length = 1 + (n - 1) * std::abs(inc);
  if constexpr (std::is_same_v<T, double>) {
    return random_array(random, length, offset);
  } else {
    Guarded<T> values(static_cast<std::size_t>(length));
    for (std::size_t i = 0; i < values.size(); ++i) {
      values[i] = random.integer(-1000000, 1000000);
    }
    return values;
  }
}

// A routine of one vector that returns a number.
template <auto routine>
void reduce(BitHash& hash) {
  sweep([&hash](Random& random, std::int32_t n, std::int32_t inc, std::size_t offset) {
    hash.add(by_address(routine, n, strided(random, n, inc, offset), inc));
  });
}

// A routine of one vector that it changes, and of a number before it or none.
template <auto routine, class T = double, class... Number>
void change(BitHash& hash, const Number&... number) {
  sweep([&](Random& random, std::int32_t n, std::int32_t inc, std::size_t offset) {
    Guarded<T> x = strided<T>(random, n, inc, offset);
    by_address(routine, n, number..., x, inc);
    hash.add(x);
  });
}

template <auto routine>
void scale(BitHash& hash) {
  change<routine>(hash, 0.7);
}

// A routine that takes x to y, their increments unlike.
template <auto routine>
void move(BitHash& hash) {
  sweep([&hash](Random& random, std::int32_t n, std::int32_t inc, std::size_t offset) {
    const std::int32_t incy = inc == 1 ? 1 : -inc;
    Array x = strided(random, n, inc, offset);
    Array y = strided(random, n, incy, 1 - offset);
    by_address(routine, n, x, inc, y, incy);
    hash.add(x);
    hash.add(y);
  });
}

void icopy(BitHash& hash) {
  sweep([&hash](Random& random, std::int32_t n, std::int32_t inc, std::size_t) {
    const Integers x = strided<std::int32_t>(random, n, inc, 0);
    Integers y = strided<std::int32_t>(random, n, inc, 0);
    by_address(e_icopy, n, x, inc, y, -inc);
    hash.add(y);
  });
}

void daxpy(BitHash& hash) {
  sweep([&hash](Random& random, std::int32_t n, std::int32_t inc, std::size_t offset) {
    const Array x = strided(random, n, inc, offset);
    Array y = strided(random, n, inc, 0);
    by_address(e_daxpy, n, -1.3, x, inc, y, inc);
    hash.add(y);
  });
}

void dnrm2(BitHash& hash) {
  reduce<e_dnrm2>(hash);
  for (const double size : {1e-300, 1e300}) {
    hash.add(by_address(e_dnrm2, 203, Random(3).vector(203, -size, size), 1));
  }
}

void drotg(BitHash& hash) {
  Random random(4);
  for (int i = 0; i < 200; ++i) {
    double numbers[] = {random.uniform(), i % 7 == 0 ? 0.0 : random.uniform(), 0, 0};
    e_drotg(numbers, numbers + 1, numbers + 2, numbers + 3);
    hash.add(numbers);
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
    by_address(e_daxpyi, s.n, 0.3, s.x, s.index, s.y);
    hash.add(s.y);
  });
}

void ddoti(BitHash& hash) {
  sweep_sparse([&hash](Sparse& s) { hash.add(by_address(e_ddoti, s.n, s.x, s.index, s.y)); });
}

void dgthr(BitHash& hash) {
  sweep_sparse([&hash](Sparse& s) {
    by_address(e_dgthr, s.n, s.y, s.x, s.index);
    hash.add(s.x);
  });
}

void dsctr(BitHash& hash) {
  sweep_sparse([&hash](Sparse& s) {
    by_address(e_dsctr, s.n, s.x, s.index, s.y);
    hash.add(s.y);
  });
}

}  // namespace

std::vector<Routine> level1_routines() {
  return {{"e_dzero", [](BitHash& hash) { change<e_dzero>(hash); }},
          {"e_izero", [](BitHash& hash) { change<e_izero, std::int32_t>(hash); }},
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
