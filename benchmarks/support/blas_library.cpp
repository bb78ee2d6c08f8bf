// SPDX-License-Identifier: MIT
#include "support/blas_library.h"

#include <dlfcn.h>
#include <link.h>
#include <omp.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "ZORTAVInstructionSet.h"
#include "support/eigen_peer.h"

extern char** environ;

namespace zorbench {
namespace {

constexpr double too_many_for_the_reference = 3e9;

void* load(const std::string& file) {
  void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(1);
  }
  return handle;
}

void forget_settings(const std::string& prefix) {
  std::vector<std::string> names;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string text = *entry;
    if (text.starts_with(prefix)) {
      names.push_back(text.substr(0, text.find('=')));
    }
  }
  for (const std::string& name : names) {
    unsetenv(name.c_str());
  }
}

// OpenBLAS chooses its kernels when it is loaded. A file is loaded once however often it is asked for: the second
// choice needs a copy of the file.
BlasLibrary openblas(const char* core, void* original) {
  link_map* loaded = nullptr;
  dlinfo(original, RTLD_DI_LINKMAP, &loaded);
  const auto copy = std::filesystem::temp_directory_path() / ("zorbench_" + std::to_string(rand()) + "_" + core);
  std::filesystem::copy_file(loaded->l_name, copy, std::filesystem::copy_options::overwrite_existing);
  setenv("OPENBLAS_CORETYPE", core, 1);
  void* const handle = load(copy.string());
  unsetenv("OPENBLAS_CORETYPE");
  std::filesystem::remove(copy);
  using CoreName = char*();
  const auto core_name = reinterpret_cast<CoreName*>(dlsym(handle, "openblas_get_corename"));
  return {std::string("OpenBLAS-") + core_name(), {handle}, "openblas_set_num_threads"};
}

std::vector<BlasLibrary> load_all() {
  int32_t active = 0;
  int32_t highest = 0;
  int32_t reason = 0;
  ehgetisa(&active, &highest, &reason);
  const bool avx512 = highest == ZORTavInstructionSetAvx512;
  forget_settings("OPENBLAS_");
  forget_settings("BLIS_");
  std::vector<BlasLibrary> libraries;
  // The reference BLAS first: what is loaded under the name libblas.so.3 is what the LAPACK library's calls meet.
  void* const blas = load("/usr/lib/x86_64-linux-gnu/blas/libblas.so.3");
  libraries.push_back({"reference", {blas, load("/usr/lib/x86_64-linux-gnu/lapack/liblapack.so.3")}, ""});
  setenv("OPENBLAS_NUM_THREADS", "1", 1);
  void* const original = load("libopenblas.so.0");
  unsetenv("OPENBLAS_NUM_THREADS");
  if (avx512) {
    libraries.push_back(openblas("SkylakeX", original));
  }
  libraries.push_back(openblas("Haswell", original));
  if (avx512) {
    setenv("BLIS_ARCH_TYPE", "0", 1);  // its first sub-configuration: AVX-512
  }
  libraries.push_back({"BLIS", {load("libblis.so.4")}, "bli_thread_set_num_threads"});
  for (const BlasLibrary& library : libraries) {
    library.set_threads(1);
  }
  return libraries;
}

}  // namespace

BlasLibrary::BlasLibrary(std::string name, std::vector<void*> handles, std::string thread_setter)
    : name_(std::move(name)), handles_(std::move(handles)), thread_setter_(std::move(thread_setter)) {}

void* BlasLibrary::address(const char* symbol) const {
  for (void* const handle : handles_) {
    if (void* const found = dlsym(handle, symbol)) {
      return found;
    }
  }
  return nullptr;
}

void BlasLibrary::set_threads(int threads) const {
  using Setter = void(long);
  if (Setter* const setter = threaded() ? find<Setter>(thread_setter_.c_str()) : nullptr) {
    setter(threads);
  }
}

const std::vector<BlasLibrary>& blas_libraries() {
  static const std::vector<BlasLibrary> libraries = load_all();
  return libraries;
}

std::vector<const BlasLibrary*> blas_libraries_for(double operations) {
  std::vector<const BlasLibrary*> wanted;
  for (const BlasLibrary& library : blas_libraries()) {
    if (library.name() != "reference" || operations < too_many_for_the_reference) {
      wanted.push_back(&library);
    }
  }
  return wanted;
}

void set_threads_of_all(int threads) {
  for (const BlasLibrary& library : blas_libraries()) {
    library.set_threads(threads);
  }
  eigen::set_threads(threads);
  omp_set_num_threads(threads);
}

}  // namespace zorbench
