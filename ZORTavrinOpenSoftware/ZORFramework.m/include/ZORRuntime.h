/* SPDX-License-Identifier: MIT */
/* The process that the library runs in: how it is stopped, and its floating-point exceptions. */
#ifndef ZOR_RUNTIME_H
#define ZOR_RUNTIME_H

#include <stdint.h>

#include "ZORExport.h"

/**
 * Stops the process: writes the text and a line end to standard error, flushes every open output stream and ends the
 * process with exit status 1. Does not return. The numerical routines use it where an argument makes the call
 * impossible.
 *
 * @param text [in] zero-terminated message, such as "DGEMM FATAL ERROR".
 */
[[noreturn]] ZOR_EXPORT void ZORRuntimeStop(const char* text);

/**
 * Stops the process because the program itself is at fault, or has no memory left for its own texts: writes the text, a
 * line that names the source, and flushes and ends the process as ZORRuntimeStop does. Does not return.
 *
 * @param text [in] zero-terminated message.
 * @param file [in] zero-terminated name of the source file.
 * @param line [in] the line in it.
 */
[[noreturn]] ZOR_EXPORT void ZORFatalError(const char* text, const char* file, int32_t line) noexcept;

/**
 * Writes one list-directed record, a text and a number, to standard output: a blank, the text, a blank, the number
 * right-justified in eleven columns, a line end. The record is flushed: it lies where standard output leads to at the
 * time of the call.
 *
 * @param text   [in] zero-terminated, at most 66 characters: a longer record would have to be broken.
 * @param number [in] number.
 */
ZOR_EXPORT void ZORRuntimeWriteRecord(const char* text, int number);

/**
 * Sets the floating-point exception mode of the calling thread.
 *
 * @param mode [in] 0: no exception traps. No other mode is defined; any other value changes nothing.
 */
ZOR_EXPORT void ZORRuntimeSetExceptionMode(int mode);

/**
 * Tells the threading runtime that runs the library's parallel regions how many threads the environment asks for, where
 * that runtime is the library's own and nobody else can (Windows). Where the process has one for all (Linux), the
 * runtime has read the environment and the program may have decided otherwise since: nothing happens.
 *
 * @param threads [in] the thread count of the environment; one below 1 changes nothing.
 */
ZOR_EXPORT void ZORRuntimeFollowThreadCount(int32_t threads);

#endif
