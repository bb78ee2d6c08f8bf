/* SPDX-License-Identifier: MIT */
/* Factorization of symmetric matrices: Cholesky of a packed triangle, elimination of a front. Indices count from 1. */
#ifndef ZORTAV_FACTORIZATION_H
#define ZORTAV_FACTORIZATION_H

#include "ZORTAVEntryPoint.h"

/**
 * Cholesky factorization A = L·Lᵀ by the framework's routine `Cholesky`, to which all arguments are passed unchanged.
 * The library stands behind that routine itself: failure rules, bits and everything else as for eaxfch2; the result is
 * added.
 *
 * @param n, n1, n2, tol, a, ierr, piv as for eaxfch2.
 * @return 0 on success, 1 when a pivot failed.
 */
ZORTAV_ENTRY int32_t eaxfch(const int32_t* n, const int32_t* n1, const int32_t* n2, const double* tol, double* a,
                            int32_t* ierr, double* piv);

/**
 * Cholesky factorization A = L·Lᵀ of rows n1..n2, row by row:
 *
 *   L(i,j) = (A(i,j) - Σ_{k<j} L(i,k)·L(j,k)) / L(j,j)   for j < i
 *   d      = A(i,i) - Σ_{k<i} L(i,k)²
 *   L(i,i) = √d
 *
 * @param n    [in]  not read (the first place of the family's argument list).
 * @param n1   [in]  first row to factor, >= 1.
 * @param n2   [in]  last row to factor; below n1: ierr = 0 and nothing else is touched.
 * @param tol  [in]  a pivot d must be strictly greater.
 * @param a    [in/out] triangle packed by rows: element (i,j), j <= i, at position i(i-1)/2 + j (the upper triangle
 *             packed by columns is the same memory). Rows 1..n1-1 hold L on entry and are only read; rows n1..n2 hold
 *             the matrix and return L.
 * @param ierr [out] 0, or the number of the row whose pivot failed (tol >= d).
 * @param piv  [out] the failing pivot d; written only on failure.
 *
 * Elements: rows 1..n2 of the triangle; nothing beyond row n2 is touched.
 * Aliasing: the scalars must not overlap `a`.
 * Zeros and NaN: a pivot that is not a number passes the test, and its root is stored. Zeros are multiplied like any
 * number. Diagonals of the rows 1..n1-1 are not tested: a zero gives infinities or NaN.
 * Bad arguments: nothing is checked.
 * Failure in row i: rows n1..i-1 are complete, row i holds its new L(i,1..i-1) and its old A(i,i), later rows are
 * unchanged.
 * Threads: any number of calls at once on different arrays. Memory: at most 384 KiB of stack, no heap.
 * Reproducibility: fixed order, no fused operations (columns in groups of four; sums of nine terms or more in two
 * partial sums, of the odd and of the even terms of whole groups of eight): the same bits at every instruction-set
 * level, and however the range of rows is divided into calls.
 * Source: the bordering form in Golub and Van Loan, Matrix Computations, 4th ed., section 4.2.
 */
ZORTAV_ENTRY void eaxfch2(const int32_t* n, const int32_t* n1, const int32_t* n2, const double* tol, double* a,
                          int32_t* ierr, double* piv);

/**
 * Eliminates the first m equations of a symmetric front of order n: A = L·D·Lᵀ with tested pivots, no interchanges.
 *
 *   d(j)   = updated a(j,j)
 *   l(i,j) = updated a(i,j) / d(j)
 *   a(i,k) := a(i,k) - Σ_{j<=m} l(i,j)·d(j)·l(k,j)
 *
 * @param n     [in]  order of the front.
 * @param m     [in]  number of leading equations to eliminate, 0 <= m <= n.
 * @param a     [in/out] the front, lower triangle packed by columns (column j holds rows j..n). Returns d(j) and
 *              l(i,j), i > j, in columns 1..m (the unit diagonal is not stored) and the updated front in the triangle
 *              behind.
 * @param rmin  [in/out] running minimum of the pivot ratios d / d0; the caller starts it. It takes the new ratio also
 *              when either of the two is NaN.
 * @param d0    [in]  initial diagonal of every equation of the whole system; entry neq belongs to the pivot examined.
 * @param tolp  [in]  a pivot must not be smaller in magnitude.
 * @param tolr  [in]  a pivot's ratio must be strictly greater.
 * @param neq   [in/out] global number of the last equation examined; incremented for each pivot examined.
 * @param npiv  [in/out] number of accepted pivots; incremented for each.
 * @param flop1 [in/out] operations of the factorization, accumulated in single precision before any elimination.
 * @param flop2 [in/out] second operation count, 4·Σ_{j<=m}(n-j) + m, accumulated likewise.
 * @param istat [out] 0; 6: |d| < tolp; 34: d / d0 <= tolr.
 * @return 0 when m pivots were eliminated, 1 when one was refused.
 *
 * Elements: the triangle is read and written; of d0 the entries of the pivots examined are read. Positions are 64-bit:
 * n may exceed 65535.
 * Aliasing: the arguments must not overlap.
 * Zeros and NaN: a pivot or a ratio that is not a number passes the tests, and spreads. Zeros are multiplied like any
 * number. A zero in d0 gives an infinite or undefined ratio that decides the test.
 * Bad arguments: nothing is checked.
 * Refusal of the pivot at position p: the elimination runs in blocks of three pivots. Complete blocks before it are
 * applied to the whole front. Of its own block there are the multipliers and diagonals among the block's equations
 * that led to this pivot, no more. Positions p+1..n·m - m(m+1)/2 are set to 0 (the bound is a 32-bit number, which
 * wraps; it lies m positions before the end of column m). Position p holds the pivot (istat 6; rmin is set to the
 * pivot too) or its ratio (istat 34).
 * Threads: any number of calls at once on different arguments. Memory: at most 356 KiB of stack, no heap.
 * Reproducibility: fixed order, no fused operations: every entry receives its updates in the order of the pivots; the
 * same bits at every instruction-set level.
 * Source: Duff and Reid, ACM TOMS 9 (1983) 302-325; Golub and Van Loan, Matrix Computations, 4th ed., section 4.1.
 */
ZORTAV_ENTRY int32_t easlff_nt(const int32_t* n, const int32_t* m, double* a, double* rmin, const double* d0,
                               const double* tolp, const double* tolr, int32_t* neq, int32_t* npiv, float* flop1,
                               float* flop2, int32_t* istat);

#endif
