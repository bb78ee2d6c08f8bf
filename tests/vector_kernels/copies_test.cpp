// SPDX-License-Identifier: MIT
// e_dcopy, e_icopy, e_dzero, e_izero.
#include <gtest/gtest.h>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/strided_vectors.h"

namespace zortest {
namespace {

template <class T>
struct Routines;
template <>
struct Routines<double> {
  static constexpr auto copy = e_dcopy;
  static constexpr auto zero = e_dzero;
};
template <>
struct Routines<int32_t> {
  static constexpr auto copy = e_icopy;
  static constexpr auto zero = e_izero;
};

template <class T>
class Copies : public testing::Test {};
using Elements = testing::Types<double, int32_t>;
TYPED_TEST_SUITE(Copies, Elements);

template <class T>
std::vector<T> numbered(std::size_t n) {
  std::vector<T> v(n);
  for (std::size_t i = 0; i < n; ++i) {
    v[i] = static_cast<T>(i + 1);
  }
  return v;
}

template <class T>
void copy_in_ascending_order(int n, const T* x, int incx, T* y, int incy) {
  for (int i = 0; i < n; ++i) {
    y[place(i, n, incy)] = x[place(i, n, incx)];
  }
}

TYPED_TEST(Copies, EveryIncrement) {
  for (int32_t n = -1; n <= 67; ++n) {
    for (const int32_t incx : increments) {
      for (const int32_t incy : increments) {
        const std::vector<TypeParam> x = numbered<TypeParam>(reach(n, incx));
        Guarded<TypeParam> y(std::vector<TypeParam>(reach(n, incy), TypeParam{-1}),
                             static_cast<std::size_t>(n + 1) % 8);
        std::vector<TypeParam> expected = y.values();
        copy_in_ascending_order(n, x.data(), incx, expected.data(), incy);
        Routines<TypeParam>::copy(&n, x.data(), &incx, y.data(), &incy);
        ASSERT_EQ(expected, y.values()) << "n " << n << " incx " << incx << " incy " << incy;
        ASSERT_TRUE(y.intact());
      }
    }
  }
}

TYPED_TEST(Copies, OverlappingArrays) {
  for (const int shift : {-9, -1, 1, 9}) {
    for (const int32_t inc : {1, 2}) {
      const int32_t n = 60;
      const std::vector<TypeParam> before = numbered<TypeParam>(200);
      std::vector<TypeParam> expected = before;
      std::vector<TypeParam> v = before;
      // Contiguous: as if the source were read first. Otherwise: element after element.
      const TypeParam* const source = inc == 1 ? before.data() : expected.data();
      copy_in_ascending_order(n, source + 10, 1, expected.data() + 10 + shift, inc);
      const int32_t incx = 1;
      Routines<TypeParam>::copy(&n, v.data() + 10, &incx, v.data() + 10 + shift, &inc);
      EXPECT_EQ(expected, v) << "shift " << shift << " inc " << inc;
    }
  }
}

TYPED_TEST(Copies, ClearsWhatTheWalkReaches) {
  for (int32_t n = -3; n <= 67; ++n) {
    for (const int32_t inc : increments) {
      if (n < 0 && inc == 1) {
        continue;  // the caller's fault
      }
      Guarded<TypeParam> x(numbered<TypeParam>(reach(n, inc)), static_cast<std::size_t>(n + 3) % 8);
      std::vector<TypeParam> expected = x.values();
      for (int i = 0; i < n; ++i) {
        expected[place(i, n, inc)] = 0;
      }
      Routines<TypeParam>::zero(&n, x.data(), &inc);
      ASSERT_EQ(expected, x.values()) << "n " << n << " inc " << inc;
      ASSERT_TRUE(x.intact());
    }
  }
}

TEST(CopiesOfDoubles, OffTheirBoundaryAndBitForBit) {
  const std::vector<double> v{1, nan, -0.0, inf, 5, 6, 7, 8, 9, 10, 11};
  const int32_t n = 5;
  const int32_t step = -2;
  OffBoundary x(v);
  OffBoundary y(std::vector<double>(9, 1.0));
  e_dcopy(&n, x.data(), &step, y.data(), &step);
  expect_same_bits({1, 1, -0.0, 1, 5, 1, 7, 1, 9}, y.values());
  e_dzero(&n, y.data(), &step);
  expect_same_bits({0, 1, 0, 1, 0, 1, 0, 1, 0}, y.values());
}

}  // namespace
}  // namespace zortest
