/* SPDX-License-Identifier: MIT */
/* The general matrix-matrix product. */
#ifndef ZORTAV_MATRIX_PRODUCT_H
#define ZORTAV_MATRIX_PRODUCT_H

#include "ZORTAVEntryPoint.h"

/**
 * C := alpha·op(A)·op(B) + beta·C, with op(X) = X or Xᵀ, for dense matrices stored column by column.
 *
 * @param transa [in] one character: "N" or "n" op(A) = A; "T", "t", "C" or "c" op(A) = Aᵀ.
 * @param transb [in] as transa, for B.
 * @param m      [in] rows of op(A) and of C, m ≥ 0.
 * @param n      [in] columns of op(B) and of C, n ≥ 0.
 * @param k      [in] columns of op(A) and rows of op(B), k ≥ 0.
 * @param alpha  [in] scalar.
 * @param a      [in] A, m × k when not transposed, else k × m; element (i, j) at (i-1) + (j-1)·lda.
 * @param lda    [in] leading dimension of A, at least max(1, rows of A).
 * @param b      [in] B, k × n when not transposed, else n × k, leading dimension ldb.
 * @param ldb    [in] leading dimension of B, at least max(1, rows of B).
 * @param beta   [in] scalar.
 * @param c      [in/out] C, m × n, leading dimension ldc.
 * @param ldc    [in] leading dimension of C, at least max(1, m).
 *
 * Elements: reads the m × k and k × n elements of op(A) and op(B), none of them when alpha = 0 or k = 0. Reads and
 * writes the leading m rows of each column of C; the rows m+1..ldc are never touched. Arrays lie on their element's
 * 8-byte boundary; more is not needed.
 *
 * Aliasing: C must not overlap A or B.
 *
 * Zeros and NaN: with beta = 0 what C held before, NaN and infinity included, does not reach the result; with alpha = 0
 * neither A nor B does. Otherwise NaN and infinity follow the arithmetic. Where alpha = -1 is reached by negating C
 * (test 1 below), a sum that is exactly zero comes out as -0.
 *
 * Bad arguments: what a malformed call meets is decided by the order of the tests:
 *   1. While the threading mode (ehaldb) is not 2, a call with op(A) = A, op(B) = B, alpha = ±1 and beta = 0 or 1 goes
 *      to the framework's product (prdgemm) with no argument checked, and clrfpe is called after it. alpha = -1 is
 *      reached by negating C before (beta = 1) and after.
 *   2. m = 0 or n = 0 returns, whatever the other arguments hold.
 *   3. (alpha = 0 or k = 0) and beta = 1 returns.
 *   4. A bad transa, transb, m, n, k, lda, ldb or ldc stops the process with "DGEMM FATAL ERROR"; C is untouched.
 *
 * Threads: outside the delegated route each pass over one column block of C (1024 columns, 96 when B is transposed) and
 * one depth block (248) is one parallel region that divides the rows of C by blocks of 80; with m <= 80 there is
 * nothing to divide and the caller works alone. May be called from several threads at once on disjoint C. Stack: at
 * most 191 KiB on every thread, 378 KiB on the caller; nothing on the heap.
 *
 * Reproducibility: fused. Every element starts from beta·C and adds its products one by one in increasing depth; the
 * bits do not depend on the route (but for the sign of zeros, above), the thread count or the alignment. AVX2 and
 * AVX-512 agree to the bit (fused multiply-add); SSE4.2 rounds product and sum separately.
 *
 * Accuracy: to first order in u = 2^-53 the error is at most (k + 2)·u·(|alpha||A||B| + |beta||C|), element by element.
 *
 * Source: J. J. Dongarra et al., "A set of level 3 basic linear algebra subprograms", ACM TOMS 16 (1990);
 * K. Goto, R. A. van de Geijn, "Anatomy of high-performance matrix multiplication", ACM TOMS 34 (2008).
 */
ZORTAV_ENTRY void eagemm(const char* transa, const char* transb, const int32_t* m, const int32_t* n, const int32_t* k,
                         const double* alpha, const double* a, const int32_t* lda, const double* b, const int32_t* ldb,
                         const double* beta, double* c, const int32_t* ldc, ZORTAV_HIDDEN_LENGTH(transa_length),
                         ZORTAV_HIDDEN_LENGTH(transb_length));

/**
 * C := A·B, or C := C + A·B when beta is exactly 1, by the framework's product ZORMatrixMult.
 *
 * @param transa, transb, alpha [in] not read: the caller guarantees that the plain product is wanted.
 * @param m, n, k, a, lda, b, ldb, c, ldc as for eagemm, none of them checked.
 * @param beta [in] 1 accumulates; anything else, NaN included, stores.
 * @return what ZORMatrixMult returns.
 *
 * Elements: as for eagemm. m < 1 or n < 1 touches nothing; k < 1 stores zeros unless it accumulates.
 * Bad arguments: none is checked.
 * Threads: runs on the calling thread alone; any number of calls at once on disjoint C. Stack: at most 191 KiB.
 * Reproducibility: fused, with the bits of eagemm.
 */
ZORTAV_ENTRY int32_t prdgemm(const char* transa, const char* transb, const int32_t* m, const int32_t* n,
                             const int32_t* k, const double* alpha, const double* a, const int32_t* lda,
                             const double* b, const int32_t* ldb, const double* beta, double* c, const int32_t* ldc,
                             ZORTAV_HIDDEN_LENGTH(transa_length), ZORTAV_HIDDEN_LENGTH(transb_length));

#endif
