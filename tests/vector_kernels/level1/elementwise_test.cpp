// SPDX-License-Identifier: MIT
// e_dcopy, e_icopy, e_dzero, e_izero, e_dscal, drscl, e_daxpy, e_dswap.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <numeric>
#include <type_traits>
#include <utility>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/strided_vectors.h"

namespace zortest {
namespace {

constexpr int32_t one = 1;

template <class T>
struct Routine {
  const char* name;
  std::function<void(const int32_t* n, T* x, const int32_t* incx, T* y, const int32_t* incy)> run;
  std::function<void(T& x, T& y)> visit;  // what it does to one pair of elements
  bool by_magnitude = false;              // y is walked from its first element also at a negative increment
};

template <class T>
void expect_same(const std::vector<T>& expected, const std::vector<T>& actual) {
  expect_same_bits({expected.begin(), expected.end()}, {actual.begin(), actual.end()});
}

// x and y may be one array.
template <class T>
void check(const Routine<T>& routine, int32_t n, Guarded<T>& x, int32_t incx, Guarded<T>& y, int32_t incy) {
  std::vector<T> own_x = x.values();
  std::vector<T> expected_y = y.values();
  std::vector<T>& expected_x = &x == &y ? expected_y : own_x;
  const int walk_y = routine.by_magnitude ? std::abs(incy) : incy;
  for (int i = 0; i < n; ++i) {
    routine.visit(expected_x[place(i, n, incx)], expected_y[place(i, n, walk_y)]);
  }
  routine.run(&n, x.data(), &incx, y.data(), &incy);
  SCOPED_TRACE(testing::Message() << routine.name << " n " << n << " incx " << incx << " incy " << incy);
  expect_same(expected_x, x.values());
  expect_same(expected_y, y.values());
  EXPECT_TRUE(x.intact() && y.intact());
}

template <class T>
std::vector<T> numbers(Random& random, std::size_t n) {
  std::vector<T> v = spread<T>(random, n);
  if constexpr (std::is_floating_point_v<T>) {
    v[static_cast<std::size_t>(random.integer(0, static_cast<int>(n) - 1))] = random.integer(0, 1) ? nan : -inf;
  }
  return v;
}

template <class T>
void check_walks(const std::vector<Routine<T>>& routines) {
  Random random(11);
  for_vectors([&](int32_t n, std::size_t at) {
    for (const int32_t incy : increments) {
      for (const int32_t incx : {incy, increments[random.integer(0, 5)]}) {
        for (std::size_t i = 0; i < routines.size() && !testing::Test::HasFailure(); ++i) {
          Guarded<T> x(numbers<T>(random, reach(n, incx)), 1, at);
          Guarded<T> y(numbers<T>(random, reach(n, incy)), 0, at);
          check(routines[i], n, x, incx, y, incy);
          if (incx == incy) {
            check(routines[i], n, y, incy, y, incy);
          }
        }
      }
    }
  });
}

template <class T, class Zero>
Routine<T> clearing(const char* name, Zero zero) {
  const auto run = [zero](const int32_t* n, T*, const int32_t*, T* y, const int32_t* incy) {
    if (*n >= 0 || *incy != 1) {  // else the caller's fault
      zero(n, y, incy);
    }
  };
  return {name, run, [](T&, T& y) { y = 0; }};
}

TEST(Elementwise, IntegersEveryWalk) {
  check_walks<int32_t>(
      {{"e_icopy", e_icopy, [](int32_t& x, int32_t& y) { y = x; }}, clearing<int32_t>("e_izero", e_izero)});
}

TEST(Elementwise, DoublesEveryWalk) {
  std::vector<Routine<double>> routines = {{"e_dcopy", e_dcopy, [](double& x, double& y) { y = x; }},
                                           {"e_dswap", e_dswap, [](double& x, double& y) { std::swap(x, y); }},
                                           clearing<double>("e_dzero", e_dzero)};
  using Size = const int32_t*;
  for (const double alpha : {0.7, -0.0}) {
    const auto run = [alpha](Size n, double* x, Size incx, double* y, Size incy) {
      e_daxpy(n, &alpha, x, incx, y, incy);
    };
    routines.push_back({"e_daxpy", run, [alpha](double& x, double& y) { y = alpha == 0 ? y : y + alpha * x; }});
  }
  for (const double alpha : {-1.75, 0.0, 1.0}) {
    const auto run = [alpha](Size n, double*, Size, double* y, Size incy) { e_dscal(n, &alpha, y, incy); };
    routines.push_back({"e_dscal", run, [alpha](double&, double& y) { y = alpha * y; }, true});
  }
  for (const double sa : {3.0, 0.0, 1.0, 1e-310}) {
    const auto run = [sa](Size n, double*, Size, double* y, Size incy) { drscl(n, &sa, y, incy); };
    const double factor = sa == 0 ? 1 : 1 / sa;
    routines.push_back({"drscl", run, [factor](double&, double& y) { y = factor * y; }, true});
  }
  check_walks(routines);
}

template <class T, class Copy>
void check_overlapping_arrays(Copy copy) {
  const int32_t n = 60;
  for (const int shift : {-9, -1, 1, 9}) {
    for (const int32_t incy : {1, 2}) {
      std::vector<T> v(200);
      std::iota(v.begin(), v.end(), T{1});
      const std::vector<T> before = v;
      std::vector<T> expected = v;
      // Contiguous: as if the source were read first. Otherwise: element after element.
      const T* const source = (incy == 1 ? before : expected).data() + 10;
      for (int i = 0; i < n; ++i) {
        expected.data()[10 + shift + i * incy] = source[i];
      }
      copy(&n, v.data() + 10, &one, v.data() + 10 + shift, &incy);
      EXPECT_EQ(expected, v) << "shift " << shift << " incy " << incy;
    }
  }
}

TEST(Elementwise, CopiesBetweenOverlappingArrays) {
  check_overlapping_arrays<double>(e_dcopy);
  check_overlapping_arrays<int32_t>(e_icopy);
}

TEST(Elementwise, ReachBeyondThirtyTwoBits) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer would book 16 GiB";
#endif
  const std::unique_ptr<double[]> far(new (std::nothrow) double[(std::size_t{1} << 31) + 1]);
  if (far == nullptr) {
    GTEST_SKIP() << "no 16 GiB of address space";
  }
  double* const last = far.get() + (std::size_t{1} << 31);
  const int32_t n = 2;
  const int32_t inc = INT32_MIN;
  const double alpha = 3;
  double y[2] = {10, 20};
  far[0] = 1;
  *last = 2;
  e_dscal(&n, &alpha, far.get(), &inc);
  e_daxpy(&n, &alpha, far.get(), &inc, y, &one);
  EXPECT_EQ(y[0], 28);
  EXPECT_EQ(y[1], 29);
  e_dcopy(&n, y, &one, far.get(), &inc);
  EXPECT_EQ(e_dasum(&n, far.get(), &inc), 57);
  EXPECT_EQ(e_idamax(&n, far.get(), &inc), 1);
  e_dzero(&n, far.get(), &inc);
  EXPECT_EQ(*last, 0);
}

}  // namespace
}  // namespace zortest
