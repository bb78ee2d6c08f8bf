/* SPDX-License-Identifier: MIT */
/* Operations on dense vectors. Included by ZORTAVVectorKernels.h, which states the common rules.
 *
 * Source: where no other is named, C. L. Lawson, R. J. Hanson, D. R. Kincaid, F. T. Krogh: Basic linear algebra
 * subprograms for Fortran usage, ACM TOMS 5 (1979). */
#ifndef ZORTAV_DENSE_VECTOR_KERNELS_H
#define ZORTAV_DENSE_VECTOR_KERNELS_H

#include "ZORTAVEntryPoint.h"

/**
 * x(i) := 0, i = 1..n.
 *
 * @param n    [in]  number of elements, >= 0 when incx = 1.
 * @param x    [out] vector.
 * @param incx [in]  increment, paired.
 *
 * Elements:        the n elements are written (as one block when incx = 1), none is read.
 * Zeros and NaN:   NaNs are cleared like other values.
 * Bad arguments:   n = 0 returns at once. n < 0 does nothing when incx is not 1; with incx = 1 it is not guarded and
 *                  must not be passed.
 * Reproducibility: exact.
 * Source:          elementary.
 */
ZORTAV_ENTRY void e_dzero(const int32_t* n, double* x, const int32_t* incx);

/**
 * ix(i) := 0, i = 1..n: for 32-bit integers; otherwise as for e_dzero.
 *
 * @param n    [in]  number of elements, >= 0 when incx = 1.
 * @param ix   [out] vector.
 * @param incx [in]  increment, paired.
 */
ZORTAV_ENTRY void e_izero(const int32_t* n, int32_t* ix, const int32_t* incx);

/**
 * y(i) := x(i), i = 1..n.
 *
 * @param n    [in]  number of elements.
 * @param x    [in]  vector.
 * @param incx [in]  increment of x, paired.
 * @param y    [out] vector.
 * @param incy [in]  increment of y, paired.
 *
 * Elements:        n elements of x are read, n of y written.
 * Aliasing:        any. With both increments 1 the result is as if x were read before y is written; otherwise elements
 *                  are copied one by one in ascending i.
 * Zeros and NaN:   values are copied bit for bit.
 * Reproducibility: exact.
 */
ZORTAV_ENTRY void e_dcopy(const int32_t* n, const double* x, const int32_t* incx, double* y, const int32_t* incy);

/**
 * iy(i) := ix(i), i = 1..n: for 32-bit integers; otherwise as for e_dcopy.
 *
 * @param n    [in]  number of elements.
 * @param ix   [in]  vector.
 * @param incx [in]  increment of ix, paired.
 * @param iy   [out] vector.
 * @param incy [in]  increment of iy, paired.
 */
ZORTAV_ENTRY void e_icopy(const int32_t* n, const int32_t* ix, const int32_t* incx, int32_t* iy, const int32_t* incy);

/**
 * x(i) := alpha*x(i), i = 1..n.
 *
 * @param n     [in]     number of elements.
 * @param alpha [in]     factor.
 * @param x     [in,out] vector.
 * @param incx  [in]     increment, walking; 0 multiplies x(1) by alpha n times.
 *
 * Elements:        the n elements are read and written.
 * Aliasing:        alpha may be an element of x: it is read once.
 * Zeros and NaN:   every element is multiplied whatever alpha is: 0*NaN and 0*infinity are NaN, 1*NaN stays NaN.
 * Reproducibility: fixed order.
 */
ZORTAV_ENTRY void e_dscal(const int32_t* n, const double* alpha, double* x, const int32_t* incx);

/**
 * x(i) := x(i)*(1/sa), i = 1..n, through e_dscal with the rounded reciprocal.
 *
 * @param n    [in]     number of elements.
 * @param sa   [in]     divisor.
 * @param x    [in,out] vector.
 * @param incx [in]     increment, walking.
 *
 * Elements:        the n elements are read and written, unless sa is 0 or 1.
 * Aliasing:        sa may be an element of x: it is read once.
 * Zeros and NaN:   sa = 0 and sa = 1 return without touching x, on purpose. 1/sa is not guarded against overflow: a
 *                  divisor of magnitude up to 2^-1024 multiplies by infinity.
 * Reproducibility: fixed order.
 * Source:          elementary.
 */
ZORTAV_ENTRY void drscl(const int32_t* n, const double* sa, double* x, const int32_t* incx);

/**
 * y(i) := y(i) + alpha*x(i), i = 1..n.
 *
 * @param n     [in]     number of elements.
 * @param alpha [in]     factor.
 * @param x     [in]     vector.
 * @param incx  [in]     increment of x, paired.
 * @param y     [in,out] vector.
 * @param incy  [in]     increment of y, paired; 0 adds all products to y(1), one by one in ascending i.
 *
 * Elements:        n elements of x are read, n of y read and written.
 * Aliasing:        x and y may be the same vector with the same increment; otherwise they may not overlap.
 * Zeros and NaN:   alpha = 0 (or -0) returns at once: x and y are not read and a NaN in x does not reach y.
 * Reproducibility: fixed order; an element's bits depend neither on n nor on increments or alignment.
 */
ZORTAV_ENTRY void e_daxpy(const int32_t* n, const double* alpha, const double* x, const int32_t* incx, double* y,
                          const int32_t* incy);

/**
 * Exchanges x(i) and y(i), i = 1..n.
 *
 * @param n    [in]     number of elements.
 * @param x    [in,out] vector.
 * @param incx [in]     increment of x, paired.
 * @param y    [in,out] vector.
 * @param incy [in]     increment of y, paired. With an increment 0 the pairs are exchanged one by one in ascending i.
 *
 * Elements:        n elements of each vector are read and written.
 * Aliasing:        x and y may be the same vector with the same increment; otherwise they may not overlap.
 * Zeros and NaN:   values are copied bit for bit.
 * Reproducibility: exact.
 */
ZORTAV_ENTRY void e_dswap(const int32_t* n, double* x, const int32_t* incx, double* y, const int32_t* incy);

/**
 * Returns |x(1)| + ... + |x(n)|.
 *
 * @param n    [in] number of elements.
 * @param x    [in] vector.
 * @param incx [in] increment, walking; 0 adds |x(1)| n times.
 *
 * Elements:        the n elements are read.
 * Reproducibility: fixed order. Four running sums s1..s4 start at 0; each group g1..g8 of eight consecutive elements
 *                  is taken as sk := (sk + |gk|) + |g(k+4)|, k = 1..4; then s := (s1 + s3) + (s2 + s4), and the fewer
 *                  than eight elements left over are added to s one by one. Groups start
 *                    at x(1)  when incx = 1 and x lies on a 16-byte boundary, or incx is neither 1 nor 0;
 *                    at x(2)  when incx = 1, x lies on an 8-byte boundary only and n >= 9; s1 starts at |x(1)|.
 *                  In all other cases and for n < 8 the elements are added to 0 one by one.
 */
ZORTAV_ENTRY double e_dasum(const int32_t* n, const double* x, const int32_t* incx);

/**
 * Returns max |x(i)|, i = 1..n.
 *
 * @param n    [in] number of elements.
 * @param x    [in] vector.
 * @param incx [in] increment, walking; 0 gives |x(1)|.
 *
 * Elements:        the n elements are read; for n = 1 only x(1).
 * Zeros and NaN:   NaNs are passed over; NaN when there is nothing else.
 * Reproducibility: exact.
 * Source:          elementary.
 */
ZORTAV_ENTRY double damax(const int32_t* n, const double* x, const int32_t* incx);

/**
 * Returns the first i with |x(i)| = max |x(j)|, j = 1..n, counted from 1.
 *
 * @param n    [in] number of elements.
 * @param x    [in] vector.
 * @param incx [in] increment, walking; 0 gives 1.
 *
 * Elements:        the n elements are read; none for n = 1.
 * Zeros and NaN:   NaNs are passed over; 1 when there is nothing else. 0 and -0 are of equal magnitude.
 * Reproducibility: exact.
 */
ZORTAV_ENTRY int32_t e_idamax(const int32_t* n, const double* x, const int32_t* incx);

/**
 * Returns sqrt(x(1)^2 + ... + x(n)^2) without overflow or destructive underflow of the squares.
 *
 * @param n    [in] number of elements.
 * @param x    [in] vector.
 * @param incx [in] increment, walking; 0 takes x(1)^2 n times.
 *
 * Elements:        the n elements are read.
 * Zeros and NaN:   zeros give 0. A NaN gives NaN. One infinity gives infinity, two give NaN.
 * Reproducibility: fixed order, strictly sequential, in four phases that are never gone back to: leading zeros; small
 *                  elements, scaled by their largest; from the first above 8.232e-11, plain squares; from the first not
 *                  below 1.304e19/n (n rounded to single precision), scaled again.
 */
ZORTAV_ENTRY double e_dnrm2(const int32_t* n, const double* x, const int32_t* incx);

/**
 * Constructs the plane rotation with c*a + s*b = r, c*b - s*a = 0, c^2 + s^2 = 1.
 *
 * @param a [in,out] first component; returns r = sqrt(a^2 + b^2) with the sign of the larger component (b when equal).
 * @param b [in,out] second component; returns z, from which c and s can be had back: |z| < 1: s = z, c = sqrt(1 - z^2);
 *                   |z| > 1: c = 1/z, s = sqrt(1 - c^2); z = 1: c = 0, s = 1.
 * @param c [out]    cosine, positive when |a| > |b|.
 * @param s [out]    sine, positive when |a| <= |b| and b is not 0.
 *
 * Elements:        all four scalars are written, except that a = b = 0 gives c = 1, s = 0 and leaves a and b alone.
 * Aliasing:        the four may not overlap.
 * Zeros and NaN:   a = 0 gives c = 0, s = 1, z = 1. A NaN reaches the results, except that b = 0 with a NaN in a counts
 *                  as no rotation. Components above half the largest number overflow.
 * Reproducibility: fixed order.
 */
ZORTAV_ENTRY void e_drotg(double* a, double* b, double* c, double* s);

#endif
