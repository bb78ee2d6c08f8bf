/* SPDX-License-Identifier: MIT */
/* How a symbol of the library is made visible to callers on Windows: exported where the library itself is compiled,
 * imported everywhere else. */
#ifndef ZOR_EXPORT_H
#define ZOR_EXPORT_H

#ifdef ZORTAVMathKernel_EXPORTS
#define ZOR_EXPORT __declspec(dllexport)
#else
#define ZOR_EXPORT __declspec(dllimport)
#endif

#endif
