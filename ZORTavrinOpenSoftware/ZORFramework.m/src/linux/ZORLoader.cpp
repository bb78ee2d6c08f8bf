// SPDX-License-Identifier: MIT
#include "ZORLoader.h"

#include <dlfcn.h>

#include <cstring>

#include "ZORString.h"

LibraryHandler ZORGetEntryPoint(const char* library, const char* entry, const char*, int32_t, int32_t,
                                int32_t) noexcept {
  if (library == nullptr || entry == nullptr || std::strchr(library, '/') != nullptr) {
    return {nullptr, nullptr};
  }
  const ZORString file = ZORString("lib") + library + ".so";
  void* const loaded = dlopen(file.GetText(), RTLD_NOW | RTLD_LOCAL);
  if (loaded == nullptr) {
    return {nullptr, nullptr};
  }
  if (void* const address = dlsym(loaded, entry)) {
    return {address, loaded};
  }
  dlclose(loaded);
  return {nullptr, nullptr};
}
