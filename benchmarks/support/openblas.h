// SPDX-License-Identifier: MIT
// OpenBLAS as the peer, loaded at run time, because it chooses its kernels when it is loaded: with nothing set in the
// environment, its best ones, or those of the processor named by ZORBENCH_OPENBLAS_CORE (such as Haswell).
#pragma once

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace zorbench {

class OpenBlas {
 public:
  static const OpenBlas& instance() {
    static const OpenBlas blas;
    return blas;
  }

  template <class Function>
  Function* function(const char* name) const {
    void* const found = dlsym(library_, name);
    if (found == nullptr) {
      std::fprintf(stderr, "OpenBLAS has no %s\n", name);
      std::exit(1);
    }
    return reinterpret_cast<Function*>(found);
  }

  void set_threads(int threads) const { function<void(int)>("openblas_set_num_threads")(threads); }
  std::string core() const { return function<char*()>("openblas_get_corename")(); }

 private:
  OpenBlas() {
    for (const char* name : {"OPENBLAS_CORETYPE", "OPENBLAS_NUM_THREADS", "OPENBLAS_VERBOSE"}) {
      unsetenv(name);
    }
    if (const char* core = std::getenv("ZORBENCH_OPENBLAS_CORE")) {
      setenv("OPENBLAS_CORETYPE", core, 1);
    }
    library_ = dlopen("libopenblas.so.0", RTLD_NOW | RTLD_LOCAL);
    if (library_ == nullptr) {
      std::fprintf(stderr, "%s\n", dlerror());
      std::exit(1);
    }
  }
  void* library_ = nullptr;
};

}  // namespace zorbench
