// SPDX-License-Identifier: MIT
// After the library was loaded, has fixed the thread count and was unloaded, the environment can still be read: its
// entries are static texts of the library.
#include <dlfcn.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char** argv) {
  if (argc != 2) {
    return 2;
  }
  unsetenv("OMP_NUM_THREADS");
  unsetenv("ADL_ODT_OUT");
  void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    std::printf("%s\n", dlerror());
    return 1;
  }
  const auto getblas = reinterpret_cast<void (*)(int32_t*, int32_t*, int32_t*)>(dlsym(library, "getblas"));
  if (getblas == nullptr) {
    std::printf("%s\n", dlerror());
    return 1;
  }
  int32_t mode = -1;
  int32_t reserved1 = -1;
  int32_t reserved2 = -1;
  getblas(&mode, &reserved1, &reserved2);
  dlclose(library);
  const char* threads = std::getenv("OMP_NUM_THREADS");
  const char* vendor_threads = std::getenv("MKL_NPROCS");
  const bool kept =
      threads != nullptr && std::atoi(threads) >= 1 && vendor_threads != nullptr && std::string(vendor_threads) == "1";
  std::printf("%s\n", kept ? "the entries outlive the library" : "the entries are lost");
  return kept ? 0 : 1;
}
