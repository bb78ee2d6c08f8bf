// SPDX-License-Identifier: MIT
// The arrays' owner, and what becomes of the solver when memory is refused.
#include <gtest/gtest.h>

#include <optional>

#include "ZORTAVListing.h"
#include "modal_analysis/solver_matrices.h"
#include "modes/modal_solver.h"
#include "services/array_memory.h"
#include "support/memory_refusal.h"
#include "test_system.h"

namespace {

using modal::Array;
using modal::ArrayMemory;
using zortest::MemoryRefusal;

constexpr double word = 8.0;

TEST(ArrayMemory, PeakCountsWhatIsHeldAtOnceInWhateverOrderItIsGivenBack) {
  ArrayMemory& memory = ArrayMemory::instance();
  ASSERT_EQ(memory.arrays(), 0U);
  constexpr std::size_t n = 1 << 20;
  {
    std::optional<Array<double>> first(n);
    std::optional<Array<std::int32_t>> second(2 * n);
    std::optional<Array<std::array<std::int32_t, 8>>> third(n / 4);
    second->front() = 5;
    second->back() = 7;
    first.reset();
    third.reset();  // the latest: its group and the gap stay below
    Array<std::int64_t> fourth(n, 3);
    EXPECT_EQ(second->front() + second->back() + fourth.back(), 15);
    EXPECT_EQ(memory.arrays(), 2U);
    second.reset();
    EXPECT_EQ(fourth.front(), 3);
    fourth.resize(n + 1);
    EXPECT_EQ(fourth[n - 1], 3);
  }
  EXPECT_EQ(memory.arrays(), 0U);
  EXPECT_GE(memory.peak_bytes(), 3.0 * n * word);
  EXPECT_LE(memory.peak_bytes(), 3.0 * n * word + 100.0 * word);
}

TEST(ArrayMemory, RefusalsSayWhatWasAskedForAndAllowed) {
  zortest::set_variable("TAV_MAX_ALLOC", "2");
  const auto said = [](std::size_t count) -> std::string {
    try {
      const Array<double> array(count);
    } catch (const std::bad_alloc& refused) {
      return refused.what();
    }
    return "";
  };
  EXPECT_EQ(said(100'000), "");
  EXPECT_EQ(said(1'000'000), "an array of 8 MB was refused: TAV_MAX_ALLOC allows 2.05 MB");
  zortest::remove_variable("TAV_MAX_ALLOC");
  EXPECT_EQ(said(1'000'000), "");
  EXPECT_EQ(said(std::size_t{1} << 31), "an array of 1.72e+04 MB is larger than one request can be");
  const MemoryRefusal refusal(1);
  EXPECT_EQ(said(1'000), "there is no memory for an array of 0.008 MB");
}

// However many requests are granted, the solver ends with bad_alloc or with the modes, and gives everything back.
TEST(ArrayMemory, TheSolverGivesEverythingBackWhenAnyRequestIsRefused) {
  constexpr int every_request = 40;  // later ones repeat themselves, step by step of the iteration
  constexpr int later_step = 11;
  bool failed = true;
  int granted = 0;
  {
    const modal::SymmetricMatrix k = modaltest::laplacian(9, 7);
    const modal::SymmetricMatrix m = modaltest::identity(k.order);
    const std::size_t before = ArrayMemory::instance().arrays();
    modaltest::Quiet quiet;
    ZORTAVTraceState("TAVPrint", 0);  // a warning a refusal
    for (; failed; granted += granted < every_request ? 1 : later_step) {
      ASSERT_LT(granted, 10'000);
      const MemoryRefusal refusal(granted + 1);
      try {
        failed = modal::find_lowest_modes(k, m, 3, quiet).eigenvalue.size() != 3;
      } catch (const std::bad_alloc&) {
        EXPECT_EQ(ArrayMemory::instance().arrays(), before) << granted;
      }
    }
  }
  ZORTAVTraceState("TAVPrint", 1);
  EXPECT_GT(granted, every_request);
}

}  // namespace
