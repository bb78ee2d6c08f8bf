// SPDX-License-Identifier: MIT
// eagemm in a process in threading mode 2: the team's size does not show in the result, callers may overlap, the stack
// that a thread needs is bounded.
#include <gtest/gtest.h>
#include <omp.h>
#include <pthread.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "ZORTAVConfiguration.h"
#include "matrix_kernels/product_oracle.h"

namespace {

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

struct Operands {
  ProductCase x;
  std::vector<double> a, b, c;
  explicit Operands(const ProductCase& size) : x(size) {
    Random random(20263);
    a = random.vector(x.a_size());
    b = random.vector(x.b_size());
    c = random.vector(x.c_size());
  }
  std::vector<double> run() const { return zortest::library_product(x, a, b, c); }
};

TEST(ProductThreads, ThePlainProductIsCheckedInThisMode) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  const ProductCase x{'N', 'N', 4, 4, 4, 1.0, 0.0, -1};
  EXPECT_EXIT(zortest::library_product(x, std::vector<double>(32), std::vector<double>(32), std::vector<double>(32)),
              testing::ExitedWithCode(1), "^DGEMM FATAL ERROR\n$");
}

TEST(ProductThreads, TheTeamDoesNotShowInTheBits) {
  for (const char* ops : {"NN", "TT"}) {
    const Operands operands({ops[0], ops[1], 403, 130, 300, -1.25, 0.5});
    omp_set_num_threads(1);
    const auto expected = operands.run();
    for (const int threads : {2, 3, 7}) {
      omp_set_num_threads(threads);
      zortest::expect_same_bits(expected, operands.run());
    }
  }
  omp_set_num_threads(2);
}

TEST(ProductThreads, SeveralCallersAtOnce) {
  const Operands operands({'N', 'T', 170, 97, 250, 1.0, 1.0});
  const auto expected = operands.run();
  std::vector<std::vector<double>> results(8);
  std::vector<std::thread> callers;
  callers.reserve(results.size());
  for (auto& result : results) {
    callers.emplace_back([&result, &operands] { result = operands.run(); });
  }
  for (auto& caller : callers) {
    caller.join();
  }
  for (const auto& result : results) {
    zortest::expect_same_bits(expected, result);
  }
}

// How many bytes of its stack a thread wrote to, found by painting the stack before.
std::size_t stack_written_by(void* (*run)(void*), void* argument) {
  constexpr std::size_t size = 1024 * 1024;
  constexpr unsigned char paint = 0xA5;
  const std::size_t page = 4096;
  void* const stack = std::aligned_alloc(page, size);
  if (stack == nullptr) {
    return 0;
  }
  std::memset(stack, paint, size);
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstack(&attributes, stack, size);
  pthread_t thread;
  const bool started = pthread_create(&thread, &attributes, run, argument) == 0;
  if (started) {
    pthread_join(thread, nullptr);
  }
  pthread_attr_destroy(&attributes);
  const auto* const bytes = static_cast<const unsigned char*>(stack);
  const auto untouched = std::find_if(bytes, bytes + size, [](unsigned char b) { return b != paint; }) - bytes;
  std::free(stack);
  return started ? size - static_cast<std::size_t>(untouched) : 0;
}

TEST(ProductThreads, TheStackOfACallIsBounded) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer widens every frame";
#endif
  // Both transposed: the caller carries both packing buffers.
  struct Task {
    const Operands operands{{'T', 'T', 170, 97, 250, 1.0, 1.0}};
    std::vector<double> result;
  } task;
  const auto expected = task.operands.run();
  const std::size_t written = stack_written_by(
      [](void* argument) -> void* {
        auto* const given = static_cast<Task*>(argument);
        given->result = given->operands.run();
        return nullptr;
      },
      &task);
  EXPECT_GT(written, 248U * (80 + 96) * sizeof(double)) << "not all of it was seen";
  EXPECT_LE(written, 384U * 1024);
  zortest::expect_same_bits(expected, task.result);
}

}  // namespace
