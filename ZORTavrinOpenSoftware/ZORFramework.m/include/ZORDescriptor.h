/* SPDX-License-Identifier: MIT */
/* File descriptors: what it takes to lead the standard output elsewhere for a while. Nothing throws. The descriptors of
 * the process are shared by its threads. */
#ifndef ZOR_DESCRIPTOR_H
#define ZOR_DESCRIPTOR_H

#include <stdint.h>

#include "ZORExport.h"

/** The descriptor that the C stream stdout writes to; -1 when it has none. */
ZOR_EXPORT int32_t ZORGetOutputDescriptor() noexcept;

/** A new descriptor, 3 or more, for what the given one leads to, not inherited by programs that the process starts; -1
 * when there is none to be had, or the given one is not open. */
ZOR_EXPORT int32_t ZORDuplicateDescriptor(int32_t descriptor) noexcept;

/** Makes `target` lead to what `source` leads to; what it led to before is closed. Returns 0, or -1 and nothing changes
 * (`source` is not open). */
ZOR_EXPORT int32_t ZORReplaceDescriptor(int32_t source, int32_t target) noexcept;

/** Closes a descriptor without committing anything to the disk. */
ZOR_EXPORT void ZORReleaseDescriptor(int32_t descriptor) noexcept;

#endif
