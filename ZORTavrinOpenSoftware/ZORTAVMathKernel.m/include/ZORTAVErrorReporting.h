/* SPDX-License-Identifier: MIT */
/* Error reports for the numerical routines, in C, C++ and Fortran, and the hook that is told of every error.
 *
 * What follows holds for all of them. Reports are written into the solver's listing. Nothing stops the process, nothing
 * is thrown; the caller returns a status of its own.
 *
 * Threads: the hook is kept in a plain process-wide variable and the listing is written to by redirecting the standard
 * output; errors are raised and hooks set from one thread.
 * Reproducibility: the same calls write the same bytes. */
#ifndef ZORTAV_ERROR_REPORTING_H
#define ZORTAV_ERROR_REPORTING_H

#include "ZORTAVEntryPoint.h"

/* The error that is reported; its methods are C++ (ZORTavError.h). */
#ifdef __cplusplus
class ZORTavError;
#else
typedef struct ZORTavError ZORTavError;
#endif

/**
 * A function that is told of an error.
 *
 * @param error [in] the error, its report already written. It ends after the return unless the function has taken a
 *              reference (AddRef), which it then gives up itself (Release).
 *
 * The function must return: no exception may leave it.
 */
typedef void (*ZORTavErrorLog)(ZORTavError* error);

/**
 * The present hook.
 *
 * @param hook [out] the function; null when there is none.
 */
ZORTAV_ENTRY void GetErrorLog(ZORTavErrorLog* hook);

/**
 * Makes a function the hook: it is called with every internal error, error and warning after its report, and with no
 * information.
 *
 * @param hook [in] the function, by value; null, as at load, switches the hook off.
 */
ZORTAV_ENTRY void SetErrorLog(ZORTavErrorLog hook);

/**
 * Reports an internal error whose text is the line "Parameter: <parameter>" and, on the next line, the given text.
 *
 * @param parameter   [in] an integer that tells the circumstances.
 * @param text        [in] 80 characters, filled up with blanks (Fortran), or a zero-terminated text of which the first
 *                    80 characters count (C). UTF-8.
 * @param flag        [out] 1; it may be the variable of the parameter.
 * @param text_length [in] hidden length; not read.
 * @return 1.
 */
ZORTAV_ENTRY int32_t ehrprog(const int32_t* parameter, const char* text, int32_t* flag,
                             ZORTAV_HIDDEN_LENGTH(text_length));

#endif
