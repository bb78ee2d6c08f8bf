// SPDX-License-Identifier: MIT
// e_dpptrs with and without the outside library: which of the two it is, the loader's path decides.
#include <gtest/gtest.h>

#include <cstdlib>

#include "ZORTAVPackedSolves.h"
#include "test_system.h"

namespace zortest {
namespace {

constexpr int32_t n = 2;
constexpr int32_t nrhs = 3;
constexpr int32_t ldb = 5;
constexpr double u[] = {2, 1, 4};

TEST(PackedCholeskySolve, HandsAllToTheOutsideRoutineWhereThereIsOne) {
  if (std::getenv("OUTSIDE_LIBRARY_IN_REACH") == nullptr) {
    GTEST_SKIP() << "the outside library is not in reach";
  }
  double b[15] = {};
  for (int call = 1; call <= 2; ++call) {
    int32_t info = 0;
    e_dpptrs("L", &n, &nrhs, u, b, &ldb, &info);
    EXPECT_EQ(b[0], 3004);
    EXPECT_EQ(b[1], call);
    EXPECT_EQ(info, 5 + 'L') << "no test of uplo on the way, and its info is the result";
  }
}

TEST(PackedCholeskySolve, LooksOnlyOnce) {
  if (std::getenv("OUTSIDE_LIBRARY_IN_REACH") != nullptr) {
    GTEST_SKIP() << "the outside library is in reach";
  }
  for (int call = 1; call <= 2; ++call) {
    double b[15] = {4, 18, 0, 0, 0, 0, 0, 0, 0, 0, 8, 36};  // A = (4 2; 2 17)
    int32_t info = 7;
    e_dpptrs("u", &n, &nrhs, u, b, &ldb, &info);
    EXPECT_EQ(b[0], 0.5);
    EXPECT_EQ(b[1], 1);
    EXPECT_EQ(b[11], 2);
    EXPECT_EQ(info, 7);
    e_dpptrs("L", &n, &nrhs, u, b, &ldb, &info);
    EXPECT_EQ(info, 1);
    // From now on the loader would find it.
    ASSERT_NE(zortest::load_library(OUTSIDE_LIBRARY), nullptr);
  }
}

}  // namespace
}  // namespace zortest
