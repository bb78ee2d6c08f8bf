// SPDX-License-Identifier: MIT
// The reference BLAS and LAPACK as the peer, from where Debian's libblas3 and liblapack3 keep them, whichever library
// stands behind the common names.
#pragma once

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

namespace zorbench {

class ReferenceLapack {
 public:
  static const ReferenceLapack& instance() {
    static const ReferenceLapack lapack;
    return lapack;
  }

  template <class Function>
  Function* function(const char* name) const {
    void* found = dlsym(blas_, name);
    if (found == nullptr) {
      found = dlsym(lapack_, name);
    }
    if (found == nullptr) {
      std::fprintf(stderr, "the reference libraries have no %s\n", name);
      std::exit(1);
    }
    return reinterpret_cast<Function*>(found);
  }

 private:
  // Once it is loaded, the reference BLAS is the one that the LAPACK library's own need for a BLAS meets.
  ReferenceLapack()
      : blas_(loaded("/usr/lib/x86_64-linux-gnu/blas/libblas.so.3")),
        lapack_(loaded("/usr/lib/x86_64-linux-gnu/lapack/liblapack.so.3")) {}

  static void* loaded(const char* file) {
    void* const library = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
      std::fprintf(stderr, "%s\n", dlerror());
      std::exit(1);
    }
    return library;
  }

  void* blas_;
  void* lapack_;
};

}  // namespace zorbench
