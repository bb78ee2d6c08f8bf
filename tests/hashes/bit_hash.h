// SPDX-License-Identifier: MIT
// A number that stands for the bits of results, and the list of routines whose results are looked at.
//
// Source of the hash: FNV-1a, 64 bits (Fowler, Noll, Vo).
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "support/by_address.h"
#include "support/numbers.h"

namespace zortest {

class BitHash {
 public:
  template <class T>
  void add(const T& number) {
    unsigned char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    for (const unsigned char byte : bytes) {
      value_ = (value_ ^ byte) * 0x100000001B3U;
    }
  }
  template <class T>
  void add(const Guarded<T>& array) {
    for (std::size_t i = 0; i < array.size(); ++i) {
      add(array[i]);
    }
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325U;
};

// Calls one entry point with its set of inputs, the same at every call, and adds all that it gives.
struct Routine {
  const char* name;
  void (*run)(BitHash& hash);
};

using Array = Guarded<double>;
using Integers = Guarded<std::int32_t>;

inline Array random_array(Random& random, int n, std::size_t offset = 0) {
  return {random.vector(static_cast<std::size_t>(n)), offset};
}

// A triangle packed by rows or by columns, the lower one of a matrix that is far from singular.
inline Array packed_triangle(Random& random, int n, bool by_rows) {
  Array a = random_array(random, n * (n + 1) / 2);
  for (int i = 0, at = 0; i < n; ++i) {
    a[static_cast<std::size_t>(at)] = n + random.uniform(1.0, 2.0);
    at += by_rows ? i + 2 : n - i;
  }
  return a;
}

std::vector<Routine> level1_routines();
std::vector<Routine> matrix_vector_routines();
std::vector<Routine> product_routines();
std::vector<Routine> integer_routines();
std::vector<Routine> algorithm_routines();

inline std::vector<Routine> all_routines() {
  std::vector<Routine> all;
  for (const auto& room :
       {level1_routines(), matrix_vector_routines(), product_routines(), integer_routines(), algorithm_routines()}) {
    all.insert(all.end(), room.begin(), room.end());
  }
  return all;
}

}  // namespace zortest
