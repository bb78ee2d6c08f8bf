// SPDX-License-Identifier: MIT
// eagemm in a process in threading mode 2: the team's size does not show in the result, callers may overlap, the stack
// that a thread needs is bounded.
#include <gtest/gtest.h>
#include <omp.h>
#include <pthread.h>

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

TEST(ProductThreads, HalfAMebibyteOfStackIsEnough) {
  const Operands operands({'T', 'T', 170, 97, 250, 1.0, 1.0});
  const auto expected = operands.run();
  struct Task {
    const Operands& operands;
    std::vector<double> result;
  } task{operands, {}};
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 512 * 1024), 0);
  pthread_t thread;
  const auto run = [](void* argument) -> void* {
    auto* const given = static_cast<Task*>(argument);
    given->result = given->operands.run();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &task), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  zortest::expect_same_bits(expected, task.result);
}

}  // namespace
