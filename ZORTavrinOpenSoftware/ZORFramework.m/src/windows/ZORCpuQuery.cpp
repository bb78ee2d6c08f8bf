// SPDX-License-Identifier: MIT
// The processors in the affinity mask of the process, at least 1.
#include <windows.h>

#include <algorithm>
#include <bit>
#include <cstdint>

#include "ZORMathematics.h"

int32_t ZORCpuQuery::GetCores() {
  DWORD_PTR of_process = 0;
  DWORD_PTR of_system = 0;
  GetProcessAffinityMask(GetCurrentProcess(), &of_process, &of_system);
  // The mask is empty where the process runs in several groups of up to 64 processors: then it may use them all.
  const int32_t cores = of_process != 0 ? std::popcount(static_cast<std::uint64_t>(of_process))
                                        : static_cast<int32_t>(GetActiveProcessorCount(ALL_PROCESSOR_GROUPS));
  return std::max(cores, 1);
}
