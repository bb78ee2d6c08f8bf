// SPDX-License-Identifier: MIT
// Vectors off their elements' boundary, in one another's place, and beyond 32 bits.
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <numeric>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/level1/norm_oracle.h"
#include "vector_kernels/level1/strided_vectors.h"

namespace zortest {
namespace {

constexpr int32_t one = 1;

// Two misaligned vectors, changed by one routine after the other, and what they must hold.
void check_routines(Random& random, int32_t n, std::size_t bytes) {
  const auto length = static_cast<std::size_t>(n);
  std::vector<double> x = spread<double>(random, length);
  std::vector<double> y = spread<double>(random, length);
  Guarded<double> given_x(x, 1, bytes);
  Guarded<double> given_y(y, 0, bytes);
  std::vector<int32_t> backwards(length);
  std::iota(backwards.rbegin(), backwards.rend(), 1);
  const Guarded<int32_t> given_indx(backwards, 0, bytes);
  double* const gx = given_x.data();
  double* const gy = given_y.data();
  const int32_t* const indx = given_indx.data();
  const double alpha = 0.7;
  const auto expect = [&](const char* routine, const auto& visit) {
    for (std::size_t i = 0; i < length; ++i) {
      visit(x[i], y[i], y[length - 1 - i]);
    }
    SCOPED_TRACE(testing::Message() << routine << ", n " << n << ", " << bytes << " bytes");
    expect_same_bits(x, given_x.values());
    expect_same_bits(y, given_y.values());
    EXPECT_TRUE(given_x.intact() && given_y.intact());
  };
  e_daxpy(&n, &alpha, gx, &one, gy, &one);
  expect("e_daxpy", [&](double& xi, double& yi, double&) { yi += alpha * xi; });
  e_daxpy(&n, &alpha, gy, &one, gy, &one);
  expect("e_daxpy in one array", [&](double&, double& yi, double&) { yi += alpha * yi; });
  e_dscal(&n, &alpha, gy, &one);
  expect("e_dscal", [&](double&, double& yi, double&) { yi *= alpha; });
  drscl(&n, &alpha, gx, &one);
  expect("drscl", [&](double& xi, double&, double&) { xi *= 1 / alpha; });
  e_dswap(&n, gx, &one, gy, &one);
  e_dswap(&n, gx, &one, gx, &one);
  expect("e_dswap", [](double& xi, double& yi, double&) { std::swap(xi, yi); });
  e_daxpyi(&n, &alpha, gx, indx, gy);
  expect("e_daxpyi", [&](double& xi, double&, double& yk) { yk += alpha * xi; });

  // Nothing is taken together where no element lies on a boundary.
  std::vector<double> magnitudes(length);
  std::vector<double> products(length);
  for (std::size_t i = 0; i < length; ++i) {
    magnitudes[i] = std::fabs(x[i]);
    products[i] = x[i] * y[length - 1 - i];
  }
  const auto largest = std::max_element(magnitudes.begin(), magnitudes.end());
  EXPECT_EQ(sum_in_order(magnitudes, no_groups), e_dasum(&n, gx, &one));
  EXPECT_EQ(sum_in_order(products, no_groups), e_ddoti(&n, gx, indx, gy));
  EXPECT_EQ(norm(x), e_dnrm2(&n, gx, &one));
  EXPECT_EQ(*largest, damax(&n, gx, &one));
  EXPECT_EQ(largest - magnitudes.begin() + 1, e_idamax(&n, gx, &one));

  e_dgthr(&n, gy, gx, indx);
  expect("e_dgthr", [](double& xi, double&, double& yk) { xi = yk; });
  e_dscal(&n, &alpha, gx, &one);
  e_dsctr(&n, gx, indx, gy);
  expect("e_dsctr", [&](double& xi, double&, double& yk) { yk = xi *= alpha; });
  e_dcopy(&n, gx, &one, gy, &one);
  expect("e_dcopy", [](double& xi, double& yi, double&) { yi = xi; });
  e_dzero(&n, gx, &one);
  expect("e_dzero", [](double& xi, double&, double&) { xi = 0; });
}

TEST(Addresses, OffTheElementsBoundary) {
  Random random(11);
  for (const int32_t n : {1, 2, 7, 8, 9, 15, 16, 17, 33, 64, 71, 520}) {
    for (const std::size_t bytes : {2U, 4U}) {
      check_routines(random, n, bytes);
    }
  }
  for (const std::size_t bytes : {1U, 2U}) {
    std::vector<int32_t> numbers(77);
    std::iota(numbers.begin(), numbers.end(), -30);
    const Guarded<int32_t> from(numbers, 0, bytes);
    Guarded<int32_t> to(numbers.size(), 1, bytes);
    const int32_t n = 77;
    const int32_t less = 61;
    e_icopy(&n, from.data(), &one, to.data(), &one);
    e_izero(&less, to.data(), &one);
    std::fill_n(numbers.begin(), less, 0);
    EXPECT_EQ(numbers, to.values());
    EXPECT_TRUE(to.intact());
  }
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

TEST(Addresses, CopiesBetweenOverlappingArrays) {
  check_overlapping_arrays<double>(e_dcopy);
  check_overlapping_arrays<int32_t>(e_icopy);
}

TEST(Addresses, ReachBeyondThirtyTwoBits) {
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
