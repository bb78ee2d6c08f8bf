// SPDX-License-Identifier: MIT
// Decides the threading once for the process. What it returns is the third result of getblas, always 0; what it is
// called for is the threading mode that the matrix product reads.
#include <cstdint>

#include "ZORTAVConfiguration.h"
#include "services/configuration/threading_mode.h"

namespace {

constexpr std::int32_t undecided = -1;

struct Threading {
  std::int32_t mode = zortav::single_threaded_mode;
  std::int32_t reserved1 = 0;
  std::int32_t reserved2 = 0;
  std::int32_t threads = 0;
  std::int32_t decision = undecided;
};

Threading threading;

}  // namespace

std::int32_t zortav::threading_mode() noexcept {
  return threading.mode;
}

void ehaldb(int32_t* decision) {
  if (threading.decision == undecided) {
    getblas(&threading.mode, &threading.reserved1, &threading.reserved2);
    threading.decision = threading.reserved2;
    ehucpu(&threading.threads);
  }
  *decision = threading.decision;
}
