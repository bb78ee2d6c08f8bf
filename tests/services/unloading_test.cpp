// SPDX-License-Identifier: MIT
// After the library was loaded, has fixed the thread count and was unloaded, the environment can still be read: its
// entries are static texts of the library.
#include <dlfcn.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

int main(int, char** argv) {
  unsetenv("OMP_NUM_THREADS");
  unsetenv("ADL_ODT_OUT");
  void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  void* entry = library != nullptr ? dlsym(library, "getblas") : nullptr;
  if (entry == nullptr) {
    std::printf("%s\n", dlerror());
    return 1;
  }
  int32_t results[3];
  reinterpret_cast<void (*)(int32_t*, int32_t*, int32_t*)>(entry)(&results[0], &results[1], &results[2]);
  dlclose(library);
  const char* threads = std::getenv("OMP_NUM_THREADS");
  const char* vendor_threads = std::getenv("MKL_NPROCS");
  const bool kept = threads != nullptr && std::atoi(threads) >= 1 && vendor_threads == std::string("1");
  return kept ? 0 : 1;
}
