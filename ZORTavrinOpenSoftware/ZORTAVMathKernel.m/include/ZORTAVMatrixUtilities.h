/* SPDX-License-Identifier: MIT */
/* Small routines around the big kernels: scalar product, record sort, solve with a packed Cholesky factor, random
 * numbers, the plain product, P·diag(d)·Pᵀ and a typed copy.
 *
 * What holds for every entry point here and is not repeated below
 * - Matrices are dense, column by column; where no leading dimension is given it is the number of rows.
 * - Elements: those that the formula and the arguments name, no others. Arrays lie on their element's own boundary.
 * - Aliasing: arrays do not overlap, except where it is said.
 * - Zeros and NaN: zeros, infinities and NaN take part in the arithmetic like any number.
 * - Bad arguments: none is checked, nothing is printed and, but for eaxmmp and ebhpap, the process is never stopped.
 * - Threads: no state, so any number of calls at once on data that none of them writes.
 * - Memory: no heap; less than 2 KiB of stack, but for eaxmmp and ebhpap, which take 191 KiB on every
 *   thread of eagemm's team.
 * - Reproducibility: the same bits on every instruction-set level and platform, but for eaxmmp and ebhpap, which are
 *   fused as eagemm is. */
#ifndef ZORTAV_MATRIX_UTILITIES_H
#define ZORTAV_MATRIX_UTILITIES_H

#include "ZORTAVEntryPoint.h"

/**
 * Scalar product Σ x(i)·y(i), i = 1..n.
 *
 * @param n    [in] number of pairs; n < 1 reads nothing.
 * @param x    [in] vector, n elements incx apart.
 * @param incx [in] any increment; a negative one starts at position 1 + (1-n)·incx and goes back to the first element,
 *             0 uses the first element n times.
 * @param y    [in] vector, n elements incy apart; may overlap x.
 * @param incy [in] as incx.
 * @return the sum; 0 for n < 1.
 *
 * Reproducibility: eight lanes, products rounded before they are added. Both increments 1: term i goes to partial sum
 * (i-1) mod 8 in ascending order, joined as ((s0 + s4) + (s2 + s6)) + ((s1 + s5) + (s3 + s7)), whatever the alignment;
 * otherwise one after the other.
 * Source: C. L. Lawson et al., "Basic linear algebra subprograms for Fortran usage", ACM TOMS 5 (1979).
 */
ZORTAV_ENTRY double eaxscl(const int32_t* n, const double* x, const int32_t* incx, const double* y,
                           const int32_t* incy);

/**
 * Sorts records into ascending order of one of their integers.
 *
 * @param a     [in/out] `count` records one after the other, each of `width` integers.
 * @param width [in]  integers in a record, >= 1.
 * @param count [in]  number of records; below 2 touches nothing.
 * @param key   [in]  which integer decides, 1 <= key <= width; compared as a signed number.
 * @param work  [work] room for one record; what it holds afterwards is not fixed.
 *
 * Records are moved whole. The sort is not stable, and which of several records with equal keys comes first is fixed:
 * a part of the array from lo to hi, span = hi - lo, is split at the record lo + ⌊span/2⌋ + q·⌊span/4⌋, where q takes
 * the values 0, 1, 0, -1 over and over as the sort goes from split to split; the side with fewer records is sorted
 * first, the left one only if twice its number is below span. A split
 *   1. looks for the first record before the pivot with a larger key (left), and for the last one behind it with a
 *      smaller key (right). Without either the part is split at the pivot. One that is missing is the pivot's place;
 *   2. sets the pivot record aside and puts record `left` into the pivot's place; `left` is now a hole;
 *   3. while left < right: if key(right) <= pivot key, copies record `right` into the hole, moves the hole up by one,
 *      and on while it has not met `right` and key(hole) < pivot key; if it has met `right`, ends; else copies the
 *      record where the hole is to `right`. In either case `right` moves down by one;
 *   4. puts the pivot record into the hole, which is where the part is split.
 *
 * Time grows with the square of the count for unlucky orders, the stack never.
 * Reproducibility: exact.
 * Source: C. A. R. Hoare, "Quicksort", The Computer Journal 5 (1962).
 */
ZORTAV_ENTRY void eaxsort(int32_t* a, const int32_t* width, const int32_t* count, const int32_t* key, int32_t* work);

/**
 * Solves (L·Lᵀ)·x = b for one right-hand side:
 *
 *   y(i) := (b(i) - L(i,1)·y(1) - ... - L(i,i-1)·y(i-1)) / L(i,i) for i = 1..n, subtracted in this order;
 *   x(i) := y(i) / L(i,i), then y(j) := y(j) - L(i,j)·x(i) for j < i,   for i = n..1.
 *
 * @param reserved [in] not read (the first place of the family's argument list).
 * @param n        [in] order; n < 1 touches nothing.
 * @param f        [in] L packed by rows: element (i,j), j <= i, at position i(i-1)/2 + j, n(n+1)/2 elements. The upper
 *                 triangle Lᵀ packed by columns is the same memory.
 * @param b        [in/out] n elements: b on entry, x on return.
 *
 * Zeros and NaN: no pivot is tested: a zero diagonal gives infinities or NaN. Zeros are multiplied like any number.
 * Reproducibility: fixed order; the bits of dpptrs_2.
 * Source: G. H. Golub, C. F. Van Loan, Matrix Computations, 4th ed., section 3.1.
 */
ZORTAV_ENTRY void eacort(const int32_t* reserved, const int32_t* n, const double* f, double* b);

/**
 * The next pseudo-random number r in [-1, 1): seed := 65539·seed in 32-bit arithmetic that wraps around, r = seed/2^31.
 *
 * @param seed [in/out] state of the generator. A product that is 0, which only the seed 0 gives, becomes -2147483648;
 *             that seed stays what it is and gives r = -1 for ever. Odd seeds have the longest period, 2^30.
 * @param r    [out] the number, of either sign.
 *
 * Good for starting vectors, not for statistics: triples of successive numbers lie on few planes.
 * Reproducibility: exact.
 * Source: D. E. Knuth, The Art of Computer Programming, vol. 2, section 3.3.4.
 */
ZORTAV_ENTRY void eaxrnd(int32_t* seed, double* r);

/**
 * C := A·B by eagemm, with alpha = 1 and beta = 0.
 *
 * @param m [in] rows of A and C.
 * @param k [in] columns of A, rows of B. Mind the place: before n.
 * @param n [in] columns of B and C.
 * @param a [in]  A, m x k.
 * @param b [in]  B, k x n.
 * @param c [out] C, m x n. What it held before does not reach the result. Must not overlap A or B.
 *
 * Bad arguments: as for eagemm. In the threading mode 2 a k of 0 is a leading dimension that stops the process, unless
 * m or n is 0.
 * Threads: as for eagemm.
 * Reproducibility: fused, with the bits of eagemm.
 * Source: that of eagemm.
 */
ZORTAV_ENTRY void eaxmmp(const int32_t* m, const int32_t* k, const int32_t* n, const double* a, const double* b,
                         double* c);

/**
 * R := P·diag(d)·Pᵀ, as W := diag(d)·Pᵀ, then R := P·W by eaxmmp.
 *
 * @param n [in]  order of all matrices.
 * @param p [in]  P, n x n.
 * @param d [in]  n elements.
 * @param w [out] n x n; holds W(j,i) = d(j)·P(i,j) on return.
 * @param r [out] R, n x n, in full. Symmetric but for rounding.
 *
 * Bad arguments: as for eagemm.
 * Threads: as for eagemm.
 * Reproducibility: fused, with the bits of eagemm.
 * Source: elementary.
 */
ZORTAV_ENTRY void ebhpap(const int32_t* n, const double* p, const double* d, double* w, double* r);

/**
 * Copies elements: dst(i) := src(i), i = 1..count.
 *
 * @param type  [in] code of the elements' type: 2 a 16-bit integer, 3 and 4 a 32-bit integer, 5 a double, -len a
 *              character string of len bytes.
 * @param count [in] number of elements; a negative one counts by its magnitude.
 * @param src   [in] the elements.
 * @param dst   [out] where they go; may overlap src.
 *
 * Bytes copied: 4·|count| for type 3, 8·|count| for type 5, |type·count| for any other type, that product taken in 32
 * bits, which wrap around: so type 1 copies bytes and type 0 nothing. Nothing is converted; any alignment will do.
 *
 * Zeros and NaN: values are copied bit for bit.
 * Reproducibility: exact.
 * Source: elementary.
 */
ZORTAV_ENTRY void eaxcpy(const int32_t* type, const int32_t* count, const void* src, void* dst);

#endif
