/* SPDX-License-Identifier: MIT */
/* How the numerical routines may run: threads, memory limits, floating-point exceptions.
 *
 * What follows holds for all of them. Memory is counted in 8-byte words. They read environment variables, none of which
 * has to be set; a variable that is set but empty is set, and a text that does not start with a number reads as 0
 * unless said otherwise. Results depend on the machine and the environment alone.
 *
 * Aliasing: arguments of one call must not overlap; they are only written, whatever they held.
 * Bad arguments: there are none, and no error is reported.
 * Threads: decisions are kept in plain process-wide variables: call from the main thread before any parallel work,
 * unless said otherwise. */
#ifndef ZORTAV_CONFIGURATION_H
#define ZORTAV_CONFIGURATION_H

#include "ZORTAVEntryPoint.h"

/**
 * Decides afresh how many threads the numerical routines may use, and what that makes of the matrix product.
 *
 *   n    := "OMP_NUM_THREADS" as a decimal integer, where it is set;
 *           else 0, where "ADL_ODT_OUT" is set;
 *           else the number of logical processors that this process may use
 *   mode := 2 when n > 1 or "ReplayPurify" is set, else 0
 *
 * @param mode      [out] the threading mode: 2, more than one thread is in use; 0, one thread.
 * @param reserved1 [out] 0.
 * @param reserved2 [out] 0.
 *
 * Only where n is the number of processors, it becomes the thread count: the entries "MKL_NPROCS=1" and
 * "OMP_NUM_THREADS=" with n are added to the environment of the process, and the OpenMP runtime is told n for the
 * regions that the calling thread opens. The mode is told to the caller only; ehaldb sets the one that the matrix
 * product reads.
 *
 * Threads: changes the environment; no other thread may use it meanwhile.
 */
ZORTAV_ENTRY void getblas(int32_t* mode, int32_t* reserved1, int32_t* reserved2);

/**
 * Decides once for the process how the matrix product may run: the first call calls getblas and keeps its mode for the
 * process; later calls change nothing. Until then the mode is 0.
 *
 * @param decision [out] 0 on every call. It is not the threading mode.
 *
 * Threads: the first call changes the environment as getblas does.
 */
ZORTAV_ENTRY void ehaldb(int32_t* decision);

/**
 * The thread count that the environment asks for.
 *
 * @param threads [out] "OMP_NUM_THREADS" read as C reads an integer constant (decimal; octal after 0; hexadecimal after
 *                0x); 1 when it is not set or does not start with a number. Zero and negative values are handed on.
 */
ZORTAV_ENTRY void ehucpu(int32_t* threads);

/**
 * The largest single allocation that is allowed. The variable is read at every call.
 *
 *   v     := "TAV_MAX_ALLOC" · 1024144, modulo 2^32 and signed
 *   words := v / 8 rounded down when v > 0, else 2147400000
 *
 * @param words [out] 8-byte words, at most 2147400000.
 *
 * The variable counts megabytes of 1024144 bytes. From 2097 upward the product wraps: 2097 gives 2147400000 and 5000
 * gives 103219088.
 */
ZORTAV_ENTRY void ehalmxc(int32_t* words);

/**
 * The working memory of the solver. It is determined at the first call; later calls return the same.
 *
 *   m     := "TAV_REAL_MEMORY" · 2^17, modulo 2^32 and signed, where it is set; else the machine's physical memory
 *   words := m, raised to 536000000 or lowered to 2144000000
 *
 * @param words [out] 8-byte words, 536000000 to 2144000000.
 *
 * The variable counts megabytes of 2^20 bytes. From 16384 upward the product wraps: 16384 gives 536000000.
 */
ZORTAV_ENTRY void ehumem(int32_t* words);

/**
 * The memory that a slave process of the solver may use.
 *
 * @param words [out] 1073000000 8-byte words.
 *
 * Threads: may be called from any thread.
 */
ZORTAV_ENTRY void GetMaxSlaveMemory(int32_t* words);

/**
 * The version of an outside vendor library of linear algebra. None is used: the text is empty.
 *
 * @param text        [out] one zero byte is written.
 * @param text_length [in] hidden length; not read.
 *
 * Threads: may be called from any thread.
 */
ZORTAV_ENTRY void getversionmkl(char* text, ZORTAV_HIDDEN_LENGTH(text_length));

/**
 * Sets the floating-point exception mode of the calling thread to 0: no floating-point exception traps. The exception
 * flags and the rounding direction stay as they are.
 *
 * Threads: may be called from any thread; acts on the calling thread only.
 */
ZORTAV_ENTRY void clrfpe(void);

#endif
