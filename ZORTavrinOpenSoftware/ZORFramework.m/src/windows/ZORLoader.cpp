// SPDX-License-Identifier: MIT
#include "ZORLoader.h"

#include <windows.h>

#include <cstring>

#include "wide_text.h"

LibraryHandler ZORGetEntryPoint(const char* library, const char* entry, const char*, int32_t, int32_t,
                                int32_t) noexcept {
  if (library == nullptr || entry == nullptr || *library == '\0' || std::strpbrk(library, "/\\:") != nullptr) {
    return {nullptr, nullptr};
  }
  // A library that is damaged is not there; nobody is asked in a window.
  DWORD mode_before = 0;
  SetThreadErrorMode(SEM_FAILCRITICALERRORS, &mode_before);
  const HMODULE loaded = LoadLibraryW((zortav::wide(library) + L".dll").c_str());
  SetThreadErrorMode(mode_before, nullptr);
  if (loaded == nullptr) {
    return {nullptr, nullptr};
  }
  if (const FARPROC address = GetProcAddress(loaded, entry)) {
    return {reinterpret_cast<void*>(address), loaded};
  }
  FreeLibrary(loaded);
  return {nullptr, nullptr};
}
