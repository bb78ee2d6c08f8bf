/* SPDX-License-Identifier: MIT */
/* How the plain entry points are declared for C and C++.
 *
 * Every plain entry point is a C function of exactly its name that takes every argument by reference: counts,
 * dimensions, increments and indices as 32-bit signed integers, reals as 64-bit IEEE doubles, arrays as a pointer to
 * their first element. An option letter is one byte and carries its length as a hidden argument: one 64-bit integer
 * by value per option letter, after all listed arguments, as Fortran compilers pass it. The length is never read;
 * C++ callers may leave it out. */
#ifndef ZORTAV_ENTRY_POINT_H
#define ZORTAV_ENTRY_POINT_H

#include <stdint.h>

#include "ZORExport.h"

#ifdef __cplusplus
#define ZORTAV_ENTRY extern "C" ZOR_EXPORT
#define ZORTAV_HIDDEN_LENGTH(name) int64_t name = 1
#else
#define ZORTAV_ENTRY ZOR_EXPORT
#define ZORTAV_HIDDEN_LENGTH(name) int64_t name
#endif

#endif
