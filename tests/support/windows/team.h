// SPDX-License-Identifier: MIT
// How many threads the library's parallel regions run on: its OpenMP runtime is its own here and learns it from the
// environment.
#pragma once

#include <windows.h>
// After it.
#include <tlhelp32.h>

#include <cstdint>
#include <string>
#include <vector>

#include "ZORTAVConfiguration.h"
#include "ZORTAVMatrixProduct.h"
#include "test_system.h"

namespace zortest {

inline void set_team(int threads) {
  set_variable("OMP_NUM_THREADS", std::to_string(threads));
  std::int32_t unused[3];
  getblas(&unused[0], &unused[1], &unused[2]);
}

inline int threads_of_process() {
  const HANDLE threads = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  int count = 0;
  for (BOOL more = Thread32First(threads, &entry); more != FALSE; more = Thread32Next(threads, &entry)) {
    count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
  }
  CloseHandle(threads);
  return count;
}
// To be asked once, before any parallel region: a region's threads wait for the next one when it ends.
inline int team_size() {
  const int before = threads_of_process();
  const std::int32_t m = 8000;
  const std::int32_t n = 1;
  const double one = 1.0;
  const std::vector<double> a(8000, 1.0);
  std::vector<double> c(8000, 0.0);
  eagemm("T", "N", &m, &n, &n, &one, a.data(), &n, &one, &n, &one, c.data(), &m);
  return threads_of_process() - before + 1;
}

}  // namespace zortest
