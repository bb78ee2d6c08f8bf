/* SPDX-License-Identifier: MIT */
/* Raw memory. */
#ifndef ZOR_MEMORY_H
#define ZOR_MEMORY_H

#include <stddef.h>

#include "ZORExport.h"

/**
 * A block of raw memory, which the caller releases with the C runtime's free.
 *
 * @param bytes [in] its size; 0 is taken as 1.
 * @return the block, aligned for every fundamental type, its contents undetermined; null when it is not to be had.
 *
 * Threads: may be called from any thread.
 */
ZOR_EXPORT void* ZORUnsecuredMemAlloc(size_t bytes) noexcept;

/**
 * Resizes a block of raw memory; it may move. The contents are kept up to the smaller of the two sizes.
 *
 * @param block [in] what ZORUnsecuredMemAlloc, ZORUnsecuredMemRealloc or malloc returned; null makes a new block.
 * @param bytes [in] the new size; 0 is taken as 1.
 * @return the block, which the caller releases with free; null when the size is not to be had, and then the old block
 *         stays as it is.
 *
 * Threads: may be called from any thread.
 */
ZOR_EXPORT void* ZORUnsecuredMemRealloc(void* block, size_t bytes) noexcept;

/**
 * Decides whether a request for raw memory is refused.
 *
 * @param context [in] what was given to ZORSetMemRefusal.
 * @param bytes   [in] the requested size.
 * @return true refuses the request: the caller gets null as if the memory were exhausted.
 */
typedef bool (*ZORMemRefusal)(void* context, size_t bytes);

/**
 * For tests: makes raw allocation fail on purpose. Every call of ZORUnsecuredMemAlloc and ZORUnsecuredMemRealloc asks
 * the given function first, and so does every block and table of the memory manager, which gets its memory nowhere
 * else. Blocks are still released with free.
 *
 * @param refusal [in] the function to ask; null asks nobody, as at load. It must not throw; it may allocate, but not
 *                through the framework.
 * @param context [in] handed to the function.
 *
 * Threads: while no other thread allocates.
 */
ZOR_EXPORT void ZORSetMemRefusal(ZORMemRefusal refusal, void* context) noexcept;

#endif
