// SPDX-License-Identifier: MIT
// The libraries that offer BLAS and LAPACK under the published names, each loaded for itself.
#pragma once

#include <string>
#include <vector>

namespace zorbench {

class BlasLibrary {
 public:
  BlasLibrary(std::string name, std::vector<void*> handles, std::string thread_setter);

  const std::string& name() const { return name_; }
  // Null where the library has no such routine.
  template <class Function>
  Function* find(const char* routine) const {
    return reinterpret_cast<Function*>(address(routine));
  }
  void set_threads(int threads) const;
  bool threaded() const { return !thread_setter_.empty(); }

 private:
  void* address(const char* symbol) const;

  std::string name_;
  std::vector<void*> handles_;
  std::string thread_setter_;
};

// The reference; OpenBLAS with its AVX-512 kernels, where the processor has AVX-512, and with its AVX2 kernels; BLIS.
// With the first call all are loaded and set to one thread.
const std::vector<BlasLibrary>& blas_libraries();

// Those of them worth waiting for: the reference does not take part in calls of many operations.
std::vector<const BlasLibrary*> blas_libraries_for(double operations);

void set_threads_of_all(int threads);

}  // namespace zorbench
