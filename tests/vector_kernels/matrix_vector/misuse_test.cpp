// SPDX-License-Identifier: MIT
// Bad arguments of eagemv and dgemvf.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "ZORDescriptor.h"
#include "ZORTAVMatrixVectorProduct.h"
#include "support/numbers.h"
#include "test_system.h"

namespace zortest {
namespace {

struct Arguments {
  char trans = 'N';
  int32_t m = 5;
  int32_t n = 4;
  int32_t lda = 5;
  int32_t incx = 1;
  int32_t incy = 1;
  int number = 0;  // of the first bad one
};

const std::vector<Arguments> bad_arguments = {
    {.trans = 'n', .number = 1},
    {.trans = 't', .m = -1, .number = 1},
    {.trans = 'c', .number = 1},
    {.m = -1, .n = -1, .number = 2},
    {.n = -1, .lda = 4, .number = 3},
    {.lda = 4, .incx = 0, .number = 6},
    {.trans = 'T', .lda = 4, .number = 6},  // the transposed product has no other rule
    {.m = 0, .lda = 0, .number = 6},
    {.trans = 'T', .incx = 0, .incy = 0, .number = 8},
    {.trans = 'C', .n = 0, .incx = 0, .number = 8},
    {.incy = 0, .number = 11},
};

// False where y was written to. There is nothing to compute: arguments are looked at first.
template <class Routine>
bool call(Routine& routine, const Arguments& c) {
  const double alpha = 0;
  const double beta = 1;
  const double a[20] = {};
  const double x[5] = {};
  double y[5] = {1, nan, 3, 4, 5};
  const std::vector<double> before(y, y + 5);
  routine(&c.trans, &c.m, &c.n, &alpha, a, &c.lda, x, &c.incx, &beta, y, &c.incy, 1);
  return std::equal(y, y + 5, before.begin(), same_bits);
}

TEST(MatrixVectorMisuse, TheProductStopsTheProcess) {
  for (const Arguments& arguments : bad_arguments) {
    EXPECT_EXIT(call(eagemv, arguments), testing::ExitedWithCode(1), testing::Eq("DGEMV Fatal Error\n"))
        << "argument " << arguments.number;
  }
  EXPECT_TRUE(call(eagemv, {}));
  EXPECT_TRUE(call(eagemv, {.m = 0, .lda = 1}));
}

// Run in a child, whose standard output the parent reads as its standard error.
[[noreturn]] void print_record(const Arguments& arguments) {
  ZORReplaceDescriptor(zortest::descriptor_of(stderr), zortest::descriptor_of(stdout));
  const bool untouched = call(dgemvf, arguments);
  std::_Exit(untouched ? 0 : 3);  // without a flush: the record is out by now
}

TEST(MatrixVectorMisuse, TheGeneralKernelPrintsTheNumberAndReturns) {
  for (const Arguments& arguments : bad_arguments) {
    const std::string number = std::to_string(arguments.number);
    const std::string record = " DGEMV Error : " + std::string(11 - number.size(), ' ') + number + "\n";
    EXPECT_EXIT(print_record(arguments), testing::ExitedWithCode(0), testing::Eq(record));
  }
  EXPECT_EXIT(print_record({}), testing::ExitedWithCode(0), testing::Eq(""));
}

}  // namespace
}  // namespace zortest
