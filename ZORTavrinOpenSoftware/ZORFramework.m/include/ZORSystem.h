/* SPDX-License-Identifier: MIT */
/* The system framework: what the library asks of the operating system and the machine. */
#ifndef ZOR_SYSTEM_H
#define ZOR_SYSTEM_H

#include "ZORExport.h"

/**
 * The value of an environment variable.
 *
 * @param name [in] zero-terminated name.
 * @return the zero-terminated value (owned by the environment), or null when the variable is not set. A variable that
 *         is set but empty is set.
 */
ZOR_EXPORT const char* ZORGetEnv(const char* name);

#endif
