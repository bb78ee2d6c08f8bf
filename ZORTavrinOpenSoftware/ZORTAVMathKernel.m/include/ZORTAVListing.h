/* SPDX-License-Identifier: MIT */
/* The solver's listing: how numerical code writes to it, and how trace channels are switched.
 *
 * What follows holds for all of them. The listing is the trace channel "TAVPrint": nothing is written while it is off.
 * Each write goes to the solver log while one is open (ZORTavListingServices.h), else to standard output, and is
 * complete before the routine returns; standard output then leads where it led before. For a write into the log the
 * process's standard output is led into the log and back, so that no other thread may write to standard output
 * meanwhile. Where standard output is closed, the text is lost. No routine reports an error. Texts are zero-terminated;
 * null is the empty text. Texts and values are only read. A Fortran caller ends its text with char(0) and may pass the
 * hidden length of a text, which is ignored. Reproducible: the same calls write the same bytes. */
#ifndef ZORTAV_LISTING_H
#define ZORTAV_LISTING_H

#include "ZORTAVEntryPoint.h"

/**
 * Switches a trace channel on or off.
 *
 * @param channel [in] its name, such as "TAVCompute". A name that no channel has is remembered for one to come.
 * @param state   [in] by value: 0 is off, any other value on.
 *
 * Threads: while no other thread writes to a channel.
 */
ZORTAV_ENTRY void ZORTAVTraceState(const char* channel, int32_t state);

/**
 * Sets the states of the channels that the solver starts with, and opens the solver log.
 *
 * On: "TAVPrint", "TAVError". Off: "TAVCompute", "TAVDefine", "TAVStorage", "TAVAcquire". Other channels stay as they
 * are. Then the log is opened in the folder that the environment variable "ADL_ODT_OUT" names, or moved there; where
 * the variable is not set or empty, or the log cannot be opened there, the log stays as it is. Call it once, at start,
 * before any listing output.
 *
 * Threads: while no other thread writes to a channel or changes the environment.
 */
ZORTAV_ENTRY void SetTavTraces(void);

/**
 * Writes the line "<text><value>" to the listing, the value in decimal at once after the text, then a line feed as a
 * line of its own: two empty lines follow the value.
 *
 * @param text  [in] the text.
 * @param value [in] the integer.
 *
 * Threads: the thread that writes the listing.
 */
ZORTAV_ENTRY void ehprini(const char* text, const int32_t* value);

/**
 * Writes a real to the listing as printf would, then a line feed as a line of its own: where the format does not end
 * its line, this does, and an empty line follows.
 *
 * @param format [in] a printf format with at most one conversion, which must be one for a double, such as "TOL %12.5e".
 *               Anything else is undefined.
 * @param value  [in] the real; infinities and NaN appear as printf writes them.
 *
 * Threads: the thread that writes the listing.
 */
ZORTAV_ENTRY void ehprinr(const char* format, const double* value);

/**
 * Writes the text and a line end to the listing.
 *
 * @param text [in] the text.
 *
 * Threads: the thread that writes the listing.
 */
ZORTAV_ENTRY void ehprint(const char* text);

/**
 * Flushes the C stream stdout of the process.
 *
 * @return 0 on success, else not 0.
 *
 * Threads: may be called from any thread.
 */
ZORTAV_ENTRY int32_t eyflsh(void);

#endif
