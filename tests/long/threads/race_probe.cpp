// SPDX-License-Identifier: MIT
// A race on purpose: two threads of a team write one number.
#include <omp.h>

#include <cstdio>

int main() {
  int last = -1;
#pragma omp parallel num_threads(2) default(none) shared(last)
  last = omp_get_thread_num();
  std::printf("the last thread was %d\n", last);
  return 0;
}
