// SPDX-License-Identifier: MIT
// After the library was loaded, has fixed the thread count and was unloaded, the environment can still be read: its
// entries are static texts of the library.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "test_system.h"

int main(int, char** argv) {
  zortest::remove_variable("OMP_NUM_THREADS");
  zortest::remove_variable("ADL_ODT_OUT");
  void* library = zortest::load_library(argv[1]);
  void* entry = library != nullptr ? zortest::find_entry(library, "getblas") : nullptr;
  if (entry == nullptr) {
    std::printf("no library, or no entry in it\n");
    return 1;
  }
  int32_t results[3];
  reinterpret_cast<void (*)(int32_t*, int32_t*, int32_t*)>(entry)(&results[0], &results[1], &results[2]);
  zortest::release_library(library);
  const char* threads = std::getenv("OMP_NUM_THREADS");
  const char* vendor_threads = std::getenv("MKL_NPROCS");
  const bool kept = threads != nullptr && std::atoi(threads) >= 1 && vendor_threads == std::string("1");
  return kept ? 0 : 1;
}
