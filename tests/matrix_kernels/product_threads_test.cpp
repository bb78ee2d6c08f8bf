// SPDX-License-Identifier: MIT
// eagemm in a process in threading mode 2: the team's size does not show in the result, callers may overlap and have
// small stacks.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

#include "ZORTAVConfiguration.h"
#include "matrix_kernels/product_oracle.h"
#include "team.h"
#include "test_system.h"

namespace {

using zortest::Operands;
using zortest::ProductCase;
using zortest::Random;

class ModeTwo : public testing::Environment {
 public:
  void SetUp() override {
    int32_t mode = 0;
    int32_t second = 0;
    int32_t third = 0;
    getblas(&mode, &second, &third);
    ASSERT_EQ(mode, 2) << "OMP_NUM_THREADS must be above 1";
    int32_t decision = -1;
    ehaldb(&decision);
    EXPECT_EQ(decision, 0);
  }
};

[[maybe_unused]] const testing::Environment* const mode_two = testing::AddGlobalTestEnvironment(new ModeTwo);

Operands random_operands(const ProductCase& x) {
  Random random(20263);
  return {x, random};
}

TEST(ProductThreads, ThePlainProductIsCheckedInThisMode) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  const Operands operands = random_operands({'N', 'N', 4, 4, 4, 1.0, 0.0, -1});
  EXPECT_EXIT(operands.product(), testing::ExitedWithCode(1), "^DGEMM FATAL ERROR\n$");
}

TEST(ProductThreads, TheTeamDoesNotShowInTheBits) {
  for (const char* ops : {"NN", "TT"}) {
    const Operands operands = random_operands({ops[0], ops[1], 403, 130, 300, -1.25, 0.5});
    const auto expected = operands.in_stated_order();
    for (const int threads : {1, 2, 3, 7}) {
      zortest::set_team(threads);
      zortest::expect_same_bits(expected, operands.product());
    }
  }
  zortest::set_team(2);
}

// What a thread of a small stack must carry: its own buffers and those of the caller, whatever else the frames hold.
TEST(ProductThreads, ASmallStackCarriesACallAlsoOnEightThreadsAtOnce) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer widens every frame";
#endif
  constexpr std::size_t small_stack = 512 * 1024;
  const Operands operands = random_operands({'T', 'T', 170, 97, 250, 1.0, 1.0});
  const auto expected = operands.in_stated_order();
  for (const std::size_t callers : {1U, 8U}) {
    std::vector<std::vector<double>> results(callers);
    std::vector<std::thread> starters;
    starters.reserve(callers);
    for (auto& result : results) {
      starters.emplace_back(
          [&] { EXPECT_TRUE(zortest::run_with_stack(small_stack, [&] { result = operands.product(); })); });
    }
    for (auto& starter : starters) {
      starter.join();
    }
    for (const auto& result : results) {
      zortest::expect_same_bits(expected, result);
    }
  }
}

}  // namespace
