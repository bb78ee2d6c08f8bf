// SPDX-License-Identifier: MIT
// Threads change times, not results. Run with OMP_NUM_THREADS above 1.
#include <gtest/gtest.h>

#include "ZORTAVConfiguration.h"
#include "modal_analysis/solver_matrices.h"
#include "modes/modal_solver.h"
#include "team.h"

namespace {

// The library takes another route with one thread than with several; the results are the same to the last bit.
TEST(SolverThreads, SameBitsWithAnyNumberOfThreads) {
  const modal::SymmetricMatrix k = modaltest::laplacian(47, 37);
  const modal::SymmetricMatrix m = modaltest::random_dominant(k.order, 3.0, 21);
  modaltest::Quiet quiet;
  const modal::ModalResult before =
      modal::find_lowest_modes(k, m, 5, quiet);  // the threading mode is not determined yet
  std::int32_t decision = 0;
  ehaldb(&decision);
  for (const int threads : {1, 3}) {
    zortest::set_team(threads);
    const modal::ModalResult result = modal::find_lowest_modes(k, m, 5, quiet);
    zortest::expect_same_bits(before.eigenvalue, result.eigenvalue);
    zortest::expect_same_bits({before.mode.begin(), before.mode.end()}, {result.mode.begin(), result.mode.end()});
    EXPECT_EQ(before.iterations, result.iterations);
    EXPECT_EQ(before.shift, result.shift);
  }
}

}  // namespace
