/* SPDX-License-Identifier: MIT */
/* Solves with triangles in packed storage.
 *
 * Packed by columns, counted from 1: an upper triangle holds T(i,j), i <= j, at position i + j(j-1)/2, so that column j
 * ends with its diagonal; a lower triangle holds T(i,j), i >= j, at position i + (j-1)(2n-j)/2, so that column j begins
 * with it. Both have n(n+1)/2 elements; positions are computed in 64 bits.
 *
 * What holds for every entry point here
 * - Elements: the triangle is read, the right-hand sides are read and written, nothing else is touched. Arrays lie on
 *   their element's 8-byte boundary; more is not needed.
 * - Aliasing: arrays must not overlap each other.
 * - Zeros and NaN: a zero on a diagonal that is used gives infinities or NaN.
 * - Bad arguments: nothing is printed and the process is never stopped.
 * - Threads: no state; any number of calls at once on different right-hand sides.
 * - Memory: no heap; at most 70 KiB of stack.
 * - Reproducibility: fixed order, products rounded before they are subtracted, never fused: an element's bits are the
 *   same on every instruction-set level and platform, at every increment, and alone or among other right-hand sides. */
#ifndef ZORTAV_PACKED_SOLVES_H
#define ZORTAV_PACKED_SOLVES_H

#include "ZORTAVEntryPoint.h"

/**
 * Solves op(T)·x = b for a triangular T, op(T) = T or Tᵀ:
 *
 *   T,  upper: for j = n..1, unless x(j) = 0: x(j) := x(j) / T(j,j), then x(i) := x(i) - x(j)·T(i,j) for i < j;
 *   T,  lower: for j = 1..n, the same for i > j;
 *   Tᵀ, upper: for j = 1..n, x(j) := (x(j) - T(1,j)·x(1) - ... - T(j-1,j)·x(j-1)) / T(j,j), subtracted in this order;
 *   Tᵀ, lower: for j = n..1, x(j) := (x(j) - T(n,j)·x(n) - ... - T(j+1,j)·x(j+1)) / T(j,j), subtracted in this order.
 *
 * @param uplo  [in] "U" or "u": T is an upper triangle; any other letter: a lower one.
 * @param trans [in] "N" or "n": op(T) = T; any other letter: op(T) = Tᵀ.
 * @param diag  [in] "N" or "n": T has the diagonal given; any other letter: a diagonal of ones, and its places in `ap`
 *              are not read.
 * @param n     [in] order of T; n <= 0 touches nothing.
 * @param ap    [in] T, packed by columns.
 * @param x     [in/out] b on entry, x on return: n elements incx apart; for a negative incx element 1 is the last one
 *              in memory, at position 1 - (n-1)·incx.
 * @param incx  [in] any increment but 0.
 *
 * Zeros and NaN: with op(T) = T the column of a zero x(j) is not read, so infinities and NaN in it do not spread; with
 * Tᵀ every element takes part.
 * Bad arguments: none is checked; unknown letters mean what is said above.
 * Source: J. J. Dongarra et al., "An extended set of Fortran basic linear algebra subprograms", ACM TOMS 14 (1988).
 */
ZORTAV_ENTRY void e_dtpsv(const char* uplo, const char* trans, const char* diag, const int32_t* n, const double* ap,
                          double* x, const int32_t* incx, ZORTAV_HIDDEN_LENGTH(uplo_length),
                          ZORTAV_HIDDEN_LENGTH(trans_length), ZORTAV_HIDDEN_LENGTH(diag_length));

/**
 * Solves A·X = B for the Cholesky factorization A = Uᵀ·U, U upper and packed by columns, by the routine "dpptrs" of the
 * outside library "mkl_lapack32" where there is one, and by dpptrs_2 otherwise.
 *
 * The first call looks the outside routine up, once a process whatever comes of it. It is called with the seven
 * arguments as they are, without a hidden length; what it leaves in b and info is what this routine returns.
 *
 * @param uplo, n, nrhs, ap, b, ldb, info as for dpptrs_2; with the outside routine its own rules hold for them.
 *
 * Threads: as for dpptrs_2; first calls at the same time may each do the lookup.
 * Reproducibility: that of dpptrs_2, unless the outside routine is found.
 */
ZORTAV_ENTRY void e_dpptrs(const char* uplo, const int32_t* n, const int32_t* nrhs, const double* ap, double* b,
                           const int32_t* ldb, int32_t* info, ZORTAV_HIDDEN_LENGTH(uplo_length));

/**
 * Solves A·X = B for A = Uᵀ·U, U upper and packed by columns (as L = Uᵀ packed by rows is): Uᵀ·Y = B, then U·X = Y.
 *
 *   y(j) := (b(j) - U(1,j)·y(1) - ... - U(j-1,j)·y(j-1)) / U(j,j) for j = 1..n, subtracted in this order;
 *   x(j) := y(j) / U(j,j), then y(i) := y(i) - x(j)·U(i,j) for i < j,   for j = n..1.
 *
 * @param uplo [in]  "U" or "u". Any other letter: info = 1 and nothing else is touched.
 * @param n    [in]  order of A; n < 1 touches nothing.
 * @param nrhs [in]  number of right-hand sides; nrhs < 1 touches nothing; 1 is eacort's case and does not use ldb.
 * @param ap   [in]  U, packed by columns, n(n+1)/2 elements.
 * @param b    [in/out] n x nrhs, element (i,j) at (i-1) + (j-1)·ldb; on return X. Rows beyond n are never touched.
 * @param ldb  [in]  distance of the columns, |ldb| >= n.
 * @param info [out] 1 for a bad uplo; otherwise not written: a success leaves the caller's value.
 *
 * Zeros and NaN: zeros, infinities and NaN take part in the arithmetic like any number and stay within their right-hand
 * side.
 * Bad arguments: only uplo is checked.
 * Source: G. H. Golub, C. F. Van Loan, Matrix Computations, 4th ed., section 3.1.
 */
ZORTAV_ENTRY void dpptrs_2(const char* uplo, const int32_t* n, const int32_t* nrhs, const double* ap, double* b,
                           const int32_t* ldb, int32_t* info, ZORTAV_HIDDEN_LENGTH(uplo_length));

#endif
