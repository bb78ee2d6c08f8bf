// SPDX-License-Identifier: MIT
// e_dscal, drscl, e_daxpy, e_dswap.
#include <gtest/gtest.h>

#include <memory>
#include <new>

#include "ZORTAVVectorKernels.h"
#include "vector_kernels/strided_vectors.h"

namespace zortest {
namespace {

constexpr int32_t one = 1;
constexpr int32_t lengths[] = {-2, 0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 33, 63, 64, 65, 67, 71, 72, 130, 1003};

std::vector<double> scaled(std::vector<double> x, int n, double alpha, int inc) {
  for (int i = 0; i < n; ++i) {
    double& xi = x[place(i, n, std::abs(inc))];
    xi = alpha * xi;
  }
  return x;
}

void axpy(int n, double alpha, const double* x, int incx, double* y, int incy) {
  for (int i = 0; i < n && alpha != 0; ++i) {
    volatile const double product = alpha * x[place(i, n, incx)];  // rounded before it is added
    double& yi = y[place(i, n, incy)];
    yi = yi + product;
  }
}

void swap(int n, double* x, int incx, double* y, int incy) {
  for (int i = 0; i < n; ++i) {
    std::swap(x[place(i, n, incx)], y[place(i, n, incy)]);
  }
}

TEST(Scaling, MultipliesEveryElementOnce) {
  Random random(11);
  for (const int32_t n : lengths) {
    for (const int32_t inc : increments) {
      for (std::size_t offset = 0; offset < 8; ++offset) {
        std::vector<double> v = spread(random, reach(n, inc));
        v[static_cast<std::size_t>(random.integer(0, static_cast<int>(v.size()) - 1))] =
            random.integer(0, 1) ? nan : -inf;
        for (const double alpha : {-1.75, 0.0, 1.0}) {
          Guarded<double> x(v, offset);
          e_dscal(&n, &alpha, x.data(), &inc);
          expect_same_bits(scaled(v, n, alpha, inc), x.values());
          ASSERT_TRUE(x.intact());
        }
        for (const double sa : {3.0, 0.0, 1.0, 1e-310}) {
          Guarded<double> x(v, offset);
          drscl(&n, &sa, x.data(), &inc);
          expect_same_bits(sa == 0 || sa == 1 ? v : scaled(v, n, 1 / sa, inc), x.values());
        }
      }
    }
  }
}

// Every length up to 67 and every pair of misalignments, contiguous; fewer of these at every pair of increments.
template <class Check>
void for_pairs_of_vectors(const Check& check) {
  for (int32_t n = 0; n <= 67; ++n) {
    for (std::size_t at_x = 0; at_x < 3; ++at_x) {
      for (std::size_t at_y = 0; at_y < 8; ++at_y) {
        check(n, 1, 1, at_x, at_y);
      }
    }
  }
  for (const int32_t n : lengths) {
    for (const int32_t incx : increments) {
      for (const int32_t incy : increments) {
        check(n, incx, incy, 1, 0);
      }
    }
  }
}

TEST(Update, AddsTheRoundedProduct) {
  Random random(12);
  for_pairs_of_vectors([&](int32_t n, int32_t incx, int32_t incy, std::size_t at_x, std::size_t at_y) {
    const Guarded<double> x(spread(random, reach(n, incx)), at_x);
    Guarded<double> y(spread(random, reach(n, incy)), at_y);
    std::vector<double> expected = y.values();
    const double alpha = random.uniform();
    axpy(n, alpha, x.data(), incx, expected.data(), incy);
    e_daxpy(&n, &alpha, x.data(), &incx, y.data(), &incy);
    SCOPED_TRACE(testing::Message() << "n " << n << " incx " << incx << " incy " << incy << " at_y " << at_y);
    expect_same_bits(expected, y.values());
    ASSERT_TRUE(y.intact());
  });
}

TEST(Update, ByZeroTimesNaNDoesNothing) {
  const std::vector<double> x(20, nan);
  std::vector<double> y(20, 1.0);
  const int32_t n = 20;
  const double alpha = -0.0;
  e_daxpy(&n, &alpha, x.data(), &one, y.data(), &one);
  EXPECT_EQ(y, std::vector<double>(20, 1.0));
}

TEST(Swap, ExchangesPairByPair) {
  Random random(13);
  for_pairs_of_vectors([&](int32_t n, int32_t incx, int32_t incy, std::size_t at_x, std::size_t at_y) {
    Guarded<double> x(spread(random, reach(n, incx)), at_x);
    Guarded<double> y(spread(random, reach(n, incy)), at_y);
    std::vector<double> expected_x = x.values();
    std::vector<double> expected_y = y.values();
    swap(n, expected_x.data(), incx, expected_y.data(), incy);
    e_dswap(&n, x.data(), &incx, y.data(), &incy);
    SCOPED_TRACE(testing::Message() << "n " << n << " incx " << incx << " incy " << incy << " at_y " << at_y);
    expect_same_bits(expected_x, x.values());
    expect_same_bits(expected_y, y.values());
    ASSERT_TRUE(x.intact() && y.intact());
  });
}

TEST(Updates, TakeTheSameArrayTwiceAndArraysOffTheirBoundary) {
  Random random(14);
  const double alpha = 0.3;
  for (const int32_t n : {3, 8, 31, 67, 200}) {
    for (const int32_t inc : {1, 2, -1}) {
      const std::vector<double> v = spread(random, reach(n, inc));
      std::vector<double> expected = v;
      axpy(n, alpha, v.data(), inc, expected.data(), inc);

      std::vector<double> x = v;
      e_daxpy(&n, &alpha, x.data(), &inc, x.data(), &inc);
      expect_same_bits(expected, x);
      e_dswap(&n, x.data(), &inc, x.data(), &inc);
      expect_same_bits(expected, x);

      OffBoundary from(v);
      OffBoundary to(v);
      e_daxpy(&n, &alpha, from.data(), &inc, to.data(), &inc);
      expect_same_bits(expected, to.values());
      e_dswap(&n, from.data(), &inc, to.data(), &inc);
      expect_same_bits(expected, from.values());
      e_dscal(&n, &alpha, to.data(), &inc);
      expect_same_bits(scaled(v, n, alpha, inc), to.values());
    }
  }
}

TEST(Updates, ReachBeyondThirtyTwoBits) {
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
