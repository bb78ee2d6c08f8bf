// SPDX-License-Identifier: MIT
// One case of a differential test: the sizes, strides, scalars and arrays that the generator chooses, the same for all
// routines, each array twice - between guard words for the library, bare for the oracle - and their comparison.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/numbers.h"
#include "vector_kernels/level1/strided_vectors.h"

namespace zortest {

// Where the order of a sum is free: the value in extended precision, and what rounding may add to it.
struct Within {
  long double value;
  long double bound;
};

// c·n·eps·(|A||B|): `terms` terms whose magnitudes sum up to `size`, a unit in the last place for each.
inline Within sum_of(int terms, long double value, long double size) {
  return {value, static_cast<long double>(terms) * (0x1p-52L * size + 0x1p-1074L)};
}

// The elements of a row or a column.
struct Line {
  const double* first;
  std::size_t step;
  double operator()(std::size_t k) const { return first[k * step]; }
};

// first + Σ s·x(k)·y(k) over count of k, from 0. Two loops, so that the value in extended precision stays in its register.
template <class X, class Y>
[[gnu::noinline]] Within dot(int terms, int count, X x, Y y, double s = 1, long double first = 0) {
  const auto end = static_cast<std::size_t>(std::max(0, count));
  long double value = 0;
  for (std::size_t k = 0; k < end; ++k) {
    value += static_cast<long double>(s) * x(k) * y(k);
  }
  double size = 0;
  for (std::size_t k = 0; k < end; ++k) {
    size += std::fabs(s * static_cast<double>(x(k)) * y(k));
  }
  return sum_of(terms, first + value, std::fabs(first) + size);
}

inline bool agrees(const Within& expected, double got) {
  const auto value = static_cast<double>(expected.value);
  if (!std::isfinite(value) || !std::isfinite(got)) {
    return same_bits(value, got);
  }
  return std::fabs(static_cast<long double>(got) - expected.value) <= expected.bound;
}

// An array as the library and as the oracle see it. What the oracle does not change, the library must leave alone.
template <class T>
class Twin {
 public:
  Twin(const std::vector<T>& contents, std::size_t offset) : own(contents), given_(contents, offset) {}
  T* data() { return given_.data(); }
  T& operator[](std::size_t i) { return own[i]; }
  const T& result(std::size_t i) const { return given_[i]; }
  void expect_within(std::size_t i, const Within& expected) { bounded_.emplace_back(i, expected); }

  // Empty if the library's array is the oracle's.
  std::string difference() const {
    std::vector<bool> by_bits(own.size(), true);
    std::ostringstream text;
    text.precision(17);
    for (const auto& [i, expected] : bounded_) {
      by_bits[i] = false;
      if (!agrees(expected, static_cast<double>(given_[i]))) {
        text << "element " << i << ": " << given_[i] << " for " << static_cast<double>(expected.value) << " within "
             << static_cast<double>(expected.bound);
        return text.str();
      }
    }
    for (std::size_t i = 0; i < own.size(); ++i) {
      if (by_bits[i] && !same_bits(static_cast<double>(own[i]), static_cast<double>(given_[i]))) {
        text << "element " << i << ": " << given_[i] << " for " << own[i];
        return text.str();
      }
    }
    return given_.intact() ? "" : "written beyond its ends";
  }

  std::vector<T> own;

 private:
  Guarded<T> given_;
  std::vector<std::pair<std::size_t, Within>> bounded_;
};

using Reals = Twin<double>;
using Integer = Twin<std::int32_t>;

inline constexpr int smallest_size = -1;
inline constexpr int largest_size = 67;

class Trial {
 public:
  // Case after case, n takes every size and, one case in eight, a boundary of the routine's blocks; each of them meets
  // every stride. All else is drawn.
  Trial(std::uint64_t seed, int number, const std::vector<int>& boundaries)
      : random(seed * 0x9e3779b97f4a7c15U + static_cast<std::uint64_t>(number)) {
    const bool at_boundary = number % 8 == 7 && !boundaries.empty();
    const int count = at_boundary ? static_cast<int>(boundaries.size()) : largest_size - smallest_size + 1;
    const int place = at_boundary ? number / 8 : number - number / 8;
    n = at_boundary ? boundaries[static_cast<std::size_t>(place % count)] : smallest_size + place % count;
    incx = increments[static_cast<std::size_t>(place / count) % std::size(increments)];
    incy = one_of<int>({1, -1, 2, -2, 3, 0});
    alpha = scalar();
    beta = scalar();
    contents_ = one_of<Contents>({Contents::spread, Contents::spread, Contents::zeros, Contents::some_special,
                                  Contents::many_special, Contents::extreme});
  }

  template <class T>
  T one_of(const std::vector<T>& choices) {
    return choices[static_cast<std::size_t>(random.integer(0, static_cast<int>(choices.size()) - 1))];
  }
  // Another size, small for the most part.
  int other_size(const std::vector<int>& boundaries = {}) {
    const int kind = random.integer(0, 9);
    return kind == 9 && !boundaries.empty() ? one_of(boundaries) : random.integer(0, kind < 7 ? 20 : largest_size);
  }

  // No numbers whose squares or triple products leave the range.
  void keep_moderate() {
    if (contents_ == Contents::extreme) {
      contents_ = Contents::spread;
    }
  }
  void keep_finite() { contents_ = contents_ == Contents::zeros ? Contents::zeros : Contents::spread; }

  // Numbers over many binades, whose sums depend on their order, strewn with those that have rules of their own.
  std::vector<double> numbers(std::size_t count) {
    std::vector<double> v = spread<double>(random, count);
    const double share = contents_ == Contents::zeros          ? 0.3
                         : contents_ == Contents::some_special ? 0.02
                         : contents_ == Contents::many_special ? 0.4
                                                               : 0;
    for (double& x : v) {
      if (contents_ == Contents::extreme) {
        x = std::ldexp(x, random.integer(-1090, 990));
      } else if (random.uniform(0, 1) < share) {
        const bool zero = contents_ == Contents::zeros || random.integer(0, 1) == 0;
        x = zero ? one_of<double>({0.0, -0.0}) : one_of<double>({nan, inf, -inf});
      }
    }
    return v;
  }

  Reals& reals(const std::vector<double>& contents) { return reals_.emplace_back(contents, offset()); }
  Reals& reals(std::size_t count) { return reals(numbers(count)); }
  Reals& real(double x) { return reals(std::vector<double>{x}); }
  Reals& vector(int inc) { return reals(reach(n, inc)); }
  Integer& integers(const std::vector<std::int32_t>& contents) { return integers_.emplace_back(contents, offset()); }

  void expect(double expected, double got) { expect(Within{expected, -1}, got); }
  // A negative bound asks for the bits.
  void expect(const Within& expected, double got) {
    const auto value = static_cast<double>(expected.value);
    if (expected.bound < 0 ? !same_bits(value, got) : !agrees(expected, got)) {
      std::ostringstream text;
      text.precision(17);
      text << "result " << got << " for " << value;
      note(text.str());
    }
  }
  void expect_that(bool holds, const std::string& what) {
    if (!holds) {
      note(what);
    }
  }

  // Empty if all is as the oracle has it.
  std::string difference() {
    compare_all(reals_, "doubles");
    compare_all(integers_, "integers");
    return difference_;
  }
  std::string description() const {
    std::ostringstream text;
    text.precision(17);
    text << "n " << n << ", incx " << incx << ", incy " << incy << ", alpha " << alpha << ", beta " << beta;
    return text.str();
  }

  Random random;
  std::int32_t n;
  std::int32_t incx;
  std::int32_t incy;
  double alpha;
  double beta;

 private:
  enum class Contents { spread, zeros, some_special, many_special, extreme };

  std::size_t offset() { return static_cast<std::size_t>(random.integer(0, 7)); }
  double scalar() {
    return one_of<double>({0.0, 1.0, -1.0, nan, inf, -inf, random.uniform(-3, 3), random.uniform(-3, 3),
                           random.uniform(-3, 3), random.uniform(-3, 3)});
  }
  void note(const std::string& what) { difference_ = difference_.empty() ? what : difference_; }
  template <class T>
  void compare_all(const std::deque<Twin<T>>& twins, const char* kind) {
    for (std::size_t i = 0; i < twins.size(); ++i) {
      const std::string found = twins[i].difference();
      if (!found.empty()) {
        note("array " + std::to_string(i + 1) + " of " + kind + ", " + found);
      }
    }
  }

  Contents contents_;
  std::deque<Reals> reals_;
  std::deque<Integer> integers_;
  std::string difference_;
};

// A routine's entry: run() draws its arguments, calls it and has the oracle do the same.
struct Routine {
  const char* name;
  void (*run)(Trial& trial);
  std::vector<int> boundaries;  // sizes around its blocks
};

inline void PrintTo(const Routine& routine, std::ostream* out) {
  *out << routine.name;
}

std::vector<Routine> level1_routines();
std::vector<Routine> matrix_vector_routines();
std::vector<Routine> product_routines();
std::vector<Routine> sparse_routines();
std::vector<Routine> utility_routines();
std::vector<Routine> algorithm_routines();

}  // namespace zortest
