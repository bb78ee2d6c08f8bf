/* SPDX-License-Identifier: MIT */
/* The system framework: what the library asks of the operating system and the machine. Nothing here throws. */
#ifndef ZOR_SYSTEM_H
#define ZOR_SYSTEM_H

#include <stdint.h>
#include <time.h>

#include "ZORExport.h"

/**
 * The value of an environment variable.
 *
 * @param name [in] zero-terminated name.
 * @return the zero-terminated value in UTF-8 (owned by the environment), or null when the variable is not set. A
 * variable that is set but empty is set.
 *
 * Threads: not while another thread changes the environment.
 */
ZOR_EXPORT const char* ZORGetEnv(const char* name);

/**
 * Adds an entry to the environment of the process, or replaces the one of the same name.
 *
 * @param entry [in] zero-terminated "NAME=VALUE". The text itself may become the entry: it must live, and stay
 *              unchanged unless the entry is meant to change, for as long as the entry does.
 * @return 0 on success, else not 0 and the environment is unchanged.
 *
 * Threads: not while another thread reads or changes the environment.
 */
ZOR_EXPORT int32_t ZORPutEnv(char* entry);

/** What ZORGetOperatingSystem answers on the platform that the build targets. */
inline constexpr int32_t ZOROperatingSystemTarget = 4;

/**
 * The code of the operating system.
 *
 * @param option [in] reserved, 0.
 * @return ZOROperatingSystemTarget: the process runs on the platform that the library was built for.
 *
 * Threads: may be called from any thread.
 */
ZOR_EXPORT int32_t ZORGetOperatingSystem(int32_t option);

/**
 * The physical memory of the machine that the operating system manages, in bytes; 0 when it cannot be told. It is
 * the machine's, not the share that a container grants.
 *
 * Threads: may be called from any thread.
 */
ZOR_EXPORT uint64_t ZORGetPhysicalMemory();

/** Names a process to ZORGetProcessTimes. */
typedef void* ZORProcessHandle;

/** A handle that stands for whichever process uses it. It need not be released. Threads: any. */
ZOR_EXPORT ZORProcessHandle ZORGetCurrentProcess();

/**
 * The processor time that a process has used, its ended threads included.
 *
 * @param process [in] what ZORGetCurrentProcess returned; no other process can be asked about.
 * @param kernel  [out] time in the kernel, in units of 100 nanoseconds.
 * @param user    [out] time in user code, in units of 100 nanoseconds.
 * @return 0 on success; 1 for another handle or when the system refuses, and then both are 0.
 *
 * Threads: may be called from any thread.
 */
ZOR_EXPORT int32_t ZORGetProcessTimes(ZORProcessHandle process, uint64_t* kernel, uint64_t* user);

/**
 * Milliseconds since the system was started, time asleep included, modulo 2^32: it returns to 0 after 49.7 days.
 *
 * Threads: may be called from any thread.
 */
ZOR_EXPORT uint32_t ZORGetTickCount();

/**
 * The current date and time in the local time zone, by the C library's broken-down fields.
 *
 * @param now [out] all fields; all zero when the system cannot tell the time.
 *
 * Threads: may be called from any thread while none changes the environment.
 */
ZOR_EXPORT void ZORGetLocalTime(struct tm* now);

/**
 * The login name of the user that the process belongs to.
 *
 * @param name     [out] zero-terminated, cut to fit; the empty text on failure.
 * @param capacity [in] the room in name, the terminating zero included, at least 1.
 * @return 0, or negative when the system knows no name for the user.
 *
 * Threads: may be called from any thread.
 */
ZOR_EXPORT int32_t ZORGetLoginName(char* name, int32_t capacity) noexcept;

/** The machine that the process runs on. Zero-terminated texts, cut to fit. */
struct ZORSystemInfo {
  char host_name[256];
  char operating_system[128];
  char release[128];
  char machine[128];
};

/**
 * Describes the machine.
 *
 * @param information [out] all fields; all empty on failure.
 * @return 0, or negative when the system does not tell.
 *
 * Threads: may be called from any thread.
 */
ZOR_EXPORT int32_t ZORGetSystemInfo(ZORSystemInfo* information) noexcept;

#endif
