/* SPDX-License-Identifier: MIT */
/* Entries of shared libraries that are looked up while the process runs. */
#ifndef ZOR_LOADER_H
#define ZOR_LOADER_H

#include <stdint.h>

#include "ZORExport.h"

/** An entry of a shared library, and the library that holds it. */
struct LibraryHandler {
  /** The address of the entry; null when the library or the entry cannot be found. */
  void* entry;
  /** The platform's handle of the loaded library; null when entry is null. */
  void* library;
};

/**
 * Looks up an entry of a shared library and loads the library for it.
 *
 * @param library   [in] zero-terminated bare name, without folder, prefix and suffix: "x" stands for libx.so on Linux
 * and x.dll on Windows, which the system's loader searches in its usual places (LD_LIBRARY_PATH and the system's
 * folders; the program's folder, the system's and PATH). A name with a folder is not found.
 * @param entry     [in] zero-terminated name of the entry.
 * @param third     [in] reserved, "".
 * @param reserved1 [in] reserved, 0.
 * @param reserved2 [in] reserved, 1.
 * @param reserved3 [in] reserved, 0.
 * @return the entry. Its library stays loaded for the rest of the process. A library that lacks the entry is released.
 *
 * Nothing is reported and nothing throws. Threads: may be called from any thread.
 */
ZOR_EXPORT LibraryHandler ZORGetEntryPoint(const char* library, const char* entry, const char* third, int32_t reserved1,
                                           int32_t reserved2, int32_t reserved3) noexcept;

#endif
