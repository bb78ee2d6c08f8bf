// SPDX-License-Identifier: MIT
// How many threads the library's parallel regions run on.
#pragma once

#include <omp.h>

namespace zortest {

inline void set_team(int threads) {
  omp_set_num_threads(threads);
}
// The caller's team, which is the library's: a process has one OpenMP runtime.
inline int team_size() {
  int size = 0;
#pragma omp parallel reduction(+ : size)
  size += 1;
  return size;
}

}  // namespace zortest
