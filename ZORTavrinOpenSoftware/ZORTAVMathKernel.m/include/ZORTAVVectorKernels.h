/* SPDX-License-Identifier: MIT */
/* Level-1 kernels: operations on dense and on sparse vectors.
 *
 * A dense vector is its first element, a count n and an increment inc, in elements. Two kinds of routines treat the
 * increment differently, on purpose:
 *
 *   paired   (e_dzero, e_izero, e_dcopy, e_icopy, e_daxpy, e_dswap): element i lies at 1 + (i-1)*inc, or, for inc < 0,
 *            at 1 + (1-n)*inc + (i-1)*inc: the walk starts at the far end and goes back to the first element.
 *   walking  (e_dscal, drscl, e_dasum, damax, e_idamax, e_dnrm2): element i lies at 1 + (i-1)*|inc|.
 *
 * Increment 0 uses the first element n times, one operation after the other. Every 32-bit increment is valid; positions
 * are computed in 64 bits.
 *
 * What holds for all routines here and is not repeated below:
 *
 *   Units            none; results have the units that the formula gives them.
 *   Alignment        any, even off the element's own boundary; 8 bytes or better is faster.
 *   Elements         a dense vector spans 1 + (n-1)*|inc| elements of its array; only the n elements are touched. With
 *                    n <= 0 nothing is touched, and a value returned is 0. (e_dzero and e_izero differ.)
 *   Aliasing         what is only read may overlap what is only read; a scalar is no part of a vector that is written.
 *   Zeros and NaN    NaN propagates by the arithmetic of the formula; which NaN results is not fixed.
 *   Bad arguments    nothing is checked, nothing is printed, the process is never stopped.
 *   Threads          no state, no locks: any number of threads at once on data that none of them writes.
 *   Memory           no heap; less than 2 KiB of stack.
 *   Reproducibility  same bits at every instruction-set level, on every platform. "Fixed order": the operations and
 *                    their order are part of the interface; products are rounded before they are added, never fused.
 *                    "Exact": the result holds no rounding. */
#ifndef ZORTAV_VECTOR_KERNELS_H
#define ZORTAV_VECTOR_KERNELS_H

#include "ZORTAVDenseVectorKernels.h"
#include "ZORTAVSparseVectorKernels.h"

#endif
