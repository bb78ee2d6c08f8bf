/* SPDX-License-Identifier: MIT */
/* The trace channels of the solver.
 *
 * They exist from the load of the library to its unload and write to standard output while they are on (ZORTrace.h).
 * All are on at load; SetTavTraces sets the states that the solver starts with (ZORTAVListing.h). They are switched by
 * name, with ZORTAVTraceState or ZORTraControle.
 *
 * Threads: a channel is used by one thread at a time. */
#ifndef ZORTAV_TRACES_H
#define ZORTAV_TRACES_H

#include "ZORTrace.h"

/** "TAVPrint", the listing. SetTavTraces: on. */
ZOR_EXPORT extern ZORTrace Tra_TAVPrint;
/** "TAVError", errors. SetTavTraces: on. */
ZOR_EXPORT extern ZORTrace Tra_TAVError;
/** "TAVCompute", computation. SetTavTraces: off. */
ZOR_EXPORT extern ZORTrace Tra_TAVCompute;
/** "TAVDefine", definition. SetTavTraces: off. */
ZOR_EXPORT extern ZORTrace Tra_TAVDefine;
/** "TAVStorage", external storage. SetTavTraces: off. */
ZOR_EXPORT extern ZORTrace Tra_TAVStorage;
/** "TAVAcquire", acquisition. SetTavTraces: off. */
ZOR_EXPORT extern ZORTrace Tra_TAVAcquire;
/** "TAVOutput". SetTavTraces leaves it as it is, and those below. */
ZOR_EXPORT extern ZORTrace Tra_TAVOutput;
/** "TAVInfra", infrastructure. */
ZOR_EXPORT extern ZORTrace Tra_TAVInfra;
/** "TAVStorageLink", links of external storage. */
ZOR_EXPORT extern ZORTrace Tra_TAVStorageLink;
/** "TAVCpuElapse", processor and elapsed times. */
ZOR_EXPORT extern ZORTrace Tra_TAVCpuElapse;

#endif
