// SPDX-License-Identifier: MIT
// min(processors in the affinity mask, processors that the container's quota pays for), at least 1.
#include <omp.h>
#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <new>

#include "ZORMathematics.h"
#include "cpu_quota.h"

namespace {

int affinity_count() {
  if (omp_get_proc_bind() != omp_proc_bind_false) {
    // The OpenMP runtime has bound this thread to a place of its own; only the runtime knows the process's mask.
    return omp_get_num_procs();
  }
  // The kernel refuses a mask shorter than its own, whose length it does not tell.
  for (std::size_t processors = CPU_SETSIZE; processors <= 1024UL * CPU_SETSIZE; processors *= 2) {
    cpu_set_t* const mask = CPU_ALLOC(processors);
    if (mask == nullptr) {
      break;
    }
    const std::size_t bytes = CPU_ALLOC_SIZE(processors);
    const int count = sched_getaffinity(0, bytes, mask) == 0 ? CPU_COUNT_S(bytes, mask) : 0;
    CPU_FREE(mask);
    if (count > 0) {
      return count;
    }
  }
  return static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
}

}  // namespace

int32_t ZORCpuQuery::GetCores() {
  int32_t cores = affinity_count();
  try {
    const int32_t quota = zortav::cpu_quota("");
    cores = quota > 0 ? std::min(cores, quota) : cores;
  } catch (const std::bad_alloc&) {
    // Without the memory to read a path in, the mask alone decides.
  }
  return std::max(cores, 1);
}
