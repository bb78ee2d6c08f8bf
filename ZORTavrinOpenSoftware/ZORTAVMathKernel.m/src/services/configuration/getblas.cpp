// SPDX-License-Identifier: MIT
// mode := 2 when more than one thread may be used or "ReplayPurify" is set, else 0.
#include <omp.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "ZORMathematics.h"
#include "ZORRuntime.h"
#include "ZORSystem.h"
#include "ZORTAVConfiguration.h"
#include "services/configuration/threading_mode.h"

namespace {

// The environment keeps pointers to these two.
char vendor_entry[] = "MKL_NPROCS=1";
char threads_entry[sizeof "OMP_NUM_THREADS=-2147483648"];

// Gives the numerical routines every core and an outside vendor library one thread.
std::int32_t fix_thread_count() {
  const std::int32_t cores = ZORCpuQuery::GetCores();
  std::snprintf(threads_entry, sizeof threads_entry, "OMP_NUM_THREADS=%d", cores);
  ZORPutEnv(vendor_entry);
  ZORPutEnv(threads_entry);
  // The OpenMP runtime read its environment when it was loaded, so the new entry alone would change nothing.
  omp_set_num_threads(cores);
  return cores;
}

// 0 where nobody has decided: a run that writes the solver log keeps the runtime's own thread count.
std::int32_t thread_count() {
  if (const char* value = ZORGetEnv("OMP_NUM_THREADS")) {
    const std::int32_t threads = std::atoi(value);
    ZORRuntimeFollowThreadCount(threads);
    return threads;
  }
  return ZORGetEnv("ADL_ODT_OUT") == nullptr ? fix_thread_count() : 0;
}

}  // namespace

void getblas(int32_t* mode, int32_t* reserved1, int32_t* reserved2) {
  *mode = zortav::single_threaded_mode;
  *reserved1 = 0;
  *reserved2 = 0;
  if (ZORGetOperatingSystem(0) == ZOROperatingSystemTarget && thread_count() > 1) {
    *mode = zortav::multi_threaded_mode;
  }
  if (ZORGetEnv("ReplayPurify") != nullptr) {
    *mode = zortav::multi_threaded_mode;
  }
}
