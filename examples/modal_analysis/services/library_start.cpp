// SPDX-License-Identifier: MIT
#include "services/library_start.h"

#include <omp.h>

#include <cstdint>
#include <string>

#include "ZORSystem.h"
#include "ZORTAVMathKernel.h"

namespace modal {

void start_library(std::optional<int> threads) {
  if (threads) {
    static std::string setting;  // the environment keeps pointing at it
    setting = "OMP_NUM_THREADS=" + std::to_string(*threads);
    ZORPutEnv(setting.data());
    omp_set_num_threads(*threads);
  }
  std::int32_t decision = 0;
  ehaldb(&decision);
}

}  // namespace modal
