// SPDX-License-Identifier: MIT
// eagemm in a process in threading mode 2: the team's size does not show in the result, callers may overlap, the stack
// that a thread needs is bounded.
#include <gtest/gtest.h>
#include <omp.h>
#include <pthread.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <thread>

#include "ZORTAVConfiguration.h"
#include "matrix_kernels/product_oracle.h"

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
      omp_set_num_threads(threads);
      zortest::expect_same_bits(expected, operands.product());
    }
  }
  omp_set_num_threads(2);
}

TEST(ProductThreads, SeveralCallersAtOnce) {
  const Operands operands = random_operands({'N', 'T', 170, 97, 250, 1.0, 1.0});
  std::vector<std::vector<double>> results(8);
  std::vector<std::thread> callers;
  callers.reserve(results.size());
  for (auto& result : results) {
    callers.emplace_back([&result, &operands] { result = operands.product(); });
  }
  for (auto& caller : callers) {
    caller.join();
  }
  for (const auto& result : results) {
    zortest::expect_same_bits(operands.in_stated_order(), result);
  }
}

// How many bytes of its stack a thread wrote to, found by painting the stack before.
std::size_t stack_written_by(std::function<void()> run) {
  constexpr std::size_t size = 1024 * 1024;
  constexpr std::size_t page = 4096;
  constexpr unsigned char paint = 0xA5;
  const std::unique_ptr<void, decltype(&std::free)> stack(std::aligned_alloc(page, size), &std::free);
  std::memset(stack.get(), paint, size);
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstack(&attributes, stack.get(), size);
  pthread_t thread;
  const auto start = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  EXPECT_EQ(0, pthread_create(&thread, &attributes, start, &run));
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  const auto* const bytes = static_cast<const unsigned char*>(stack.get());
  return static_cast<std::size_t>(bytes + size - std::find_if(bytes, bytes + size, [](auto b) { return b != paint; }));
}

TEST(ProductThreads, TheStackOfACallIsBounded) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer widens every frame";
#endif
  // Both transposed: the caller carries both packing buffers.
  const Operands operands = random_operands({'T', 'T', 170, 97, 250, 1.0, 1.0});
  const std::size_t written = stack_written_by([&operands] { operands.product(); });
  EXPECT_GT(written, 248U * (80 + 96) * sizeof(double)) << "not all of it was seen";
  EXPECT_LE(written, 384U * 1024);
}

}  // namespace
