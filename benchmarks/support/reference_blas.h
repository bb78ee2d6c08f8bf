// SPDX-License-Identifier: MIT
// The reference BLAS as Debian packs it, loaded by its full path: the plain name may lead to any other BLAS.
#pragma once

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

namespace zorbench {

template <class Function>
Function* reference_blas(const char* name) {
  static void* const library = dlopen("/usr/lib/x86_64-linux-gnu/blas/libblas.so.3", RTLD_NOW | RTLD_LOCAL);
  void* const found = library == nullptr ? nullptr : dlsym(library, name);
  if (found == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(1);
  }
  return reinterpret_cast<Function*>(found);
}

}  // namespace zorbench
