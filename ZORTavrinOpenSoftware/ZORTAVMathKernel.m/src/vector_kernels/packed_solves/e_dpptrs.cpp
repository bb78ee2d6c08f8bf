// SPDX-License-Identifier: MIT
// Solves A·X = B for a packed A = Uᵀ·U by the outside library's routine where there is one, else by dpptrs_2.
#include <atomic>
#include <cstdint>

#include "ZORLoader.h"
#include "ZORTAVPackedSolves.h"

namespace zortav {
namespace {

// It is not given the hidden length of uplo.
using OutsideSolve = void(const char* uplo, const std::int32_t* n, const std::int32_t* nrhs, const double* ap,
                          double* b, const std::int32_t* ldb, std::int32_t* info);

std::atomic<bool> first_call{true};
std::atomic<OutsideSolve*> outside_solve{nullptr};

// Threads whose first calls meet do the same lookup with the same outcome. The entry is kept before the flag is
// cleared, so that none of them sees a lookup that is done and an entry that is not there yet.
OutsideSolve* find_outside_solve() {
  if (first_call.load(std::memory_order_acquire)) {
    const LibraryHandler found = ZORGetEntryPoint("mkl_lapack32", "dpptrs", "", 0, 1, 0);
    if (found.entry != nullptr) {
      outside_solve.store(reinterpret_cast<OutsideSolve*>(found.entry), std::memory_order_relaxed);
    }
    first_call.store(false, std::memory_order_release);
  }
  return outside_solve.load(std::memory_order_relaxed);
}

}  // namespace
}  // namespace zortav

void e_dpptrs(const char* uplo, const int32_t* n, const int32_t* nrhs, const double* ap, double* b, const int32_t* ldb,
              int32_t* info, int64_t uplo_length) {
  if (zortav::OutsideSolve* const solve = zortav::find_outside_solve()) {
    solve(uplo, n, nrhs, ap, b, ldb, info);
    return;
  }
  dpptrs_2(uplo, n, nrhs, ap, b, ldb, info, uplo_length);
}
