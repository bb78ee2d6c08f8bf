/* SPDX-License-Identifier: MIT */
/* The status codes that the framework's methods return: 32 bits, signed; 0 is success, a negative value a failure. */
#ifndef ZOR_STATUS_H
#define ZOR_STATUS_H

#include <stdint.h>

/* Some platforms' own headers bring the name. */
#ifndef E_FAIL
/** General failure. */
inline constexpr int32_t E_FAIL = static_cast<int32_t>(0x80004005U);
#endif

/** No such interface (ZORBaseObject::QueryInterface). */
inline constexpr int32_t ZORStatusNoInterface = static_cast<int32_t>(0x80004002U);
/** The operation is not offered. */
inline constexpr int32_t ZORStatusNotOffered = static_cast<int32_t>(0x80004001U);
/** An argument is not valid. */
inline constexpr int32_t ZORStatusInvalidArgument = static_cast<int32_t>(0x80070057U);
/** The file exists already. */
inline constexpr int32_t ZORStatusFileExists = static_cast<int32_t>(0x80070050U);

/**
 * A failure that the operating system reported has 0x8007 in its high 16 bits and the cause in its low 16 bits. Only
 * the causes that callers tell apart have a name here.
 */
inline constexpr uint32_t ZORSystemFailure = 0x80070000U;
inline constexpr uint32_t ZORCauseFileNotFound = 2;
inline constexpr uint32_t ZORCausePathNotFound = 3;
inline constexpr uint32_t ZORCauseAccessDenied = 5;

/** The low 16 bits of a status. */
constexpr uint32_t ZORStatusCause(int32_t status) {
  return static_cast<uint32_t>(status) & 0xFFFFU;
}

#endif
