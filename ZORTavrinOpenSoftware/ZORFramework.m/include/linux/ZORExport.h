/* SPDX-License-Identifier: MIT */
/* How a symbol of the library is made visible to callers on Linux. */
#ifndef ZOR_EXPORT_H
#define ZOR_EXPORT_H

#define ZOR_EXPORT __attribute__((visibility("default")))

#endif
