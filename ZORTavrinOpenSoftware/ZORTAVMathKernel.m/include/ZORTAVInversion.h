/* SPDX-License-Identifier: MIT */
/* Inversion of dense matrices: in place by elimination, and of symmetric matrices through their eigenvalues.
 *
 * What holds for every entry point here
 * - Elements: matrices are stored column by column; arrays lie on their element's own boundary.
 * - Aliasing: arrays must not overlap each other.
 * - Bad arguments: none is checked, nothing is printed; but for IERR, no failure is reported.
 * - Threads: any number of calls at once on different arrays. No heap memory is used. */
#ifndef ZORTAV_INVERSION_H
#define ZORTAV_INVERSION_H

#include "ZORTAVEntryPoint.h"

/**
 * A := A⁻¹ by Gauss-Jordan elimination in place.
 *
 * @param mode [in]  1: any matrix, with exchanges of columns; 2: symmetric, no exchanges, no test of the pivots; any
 *             other value: symmetric, every pivot must be larger than 1e-8 in magnitude.
 * @param lda  [in]  leading dimension of A, >= n.
 * @param n    [in]  order; n < 1 touches nothing but ierr in the tested mode.
 * @param ipiv [work] n integers, mode 1 only. On return 1..n.
 * @param ierr [out] tested mode only, else not written: 0; 1 when a pivot was refused.
 * @param a    [in/out] n x n, element (i,j) at (i-1) + (j-1)·lda; a symmetric one is given, and returned, in full. Rows
 *             n+1..lda are never touched.
 *
 * Mode 1: of the elements A(k,k..n) that are largest in magnitude the last one, if it is strictly larger than A(k,k),
 * has its column exchanged with column k before step k:
 *
 *   for k = 1..n:  r = 1/A(k,k);  A(k,k) := 0;  column k := -r·column k
 *                  for j ≠ k:  t = A(k,j);  A(k,j) := t·r;  column j := column j + t·column k, unless t = 0
 *                  A(k,k) := r
 *
 * At the end the rows are exchanged back.
 *
 * Symmetric:
 *
 *   for k = 1..n:  r = -1/A(k,k);  A(k,k) := 0;  A(k,i) := -A(i,k) for i < k;  A(j,k) := A(k,j) for j > k
 *                  for j = n..1, j ≠ k:  t = A(k,j)·r;  A(k,j) := t
 *                                        rows 1..j of column j := these + t·(rows 1..j of column k), unless t = 0
 *                                        A(j,k) := t
 *                  A(k,k) := -r
 *
 * At the end the lower triangle is copied from the upper one: the result is symmetric to the last bit.
 *
 * Refusal of pivot k: k-1 steps are done, the lower triangle is as they left it, and nothing is copied; with k = 1 the
 * matrix is unchanged.
 * Zeros and NaN: in modes 1 and 2 a zero pivot gives infinities or NaN. A pivot that is not a number passes the test.
 * Stack: at most 352 KiB.
 * Reproducibility: fixed order, no fused operations: the same bits on every instruction-set level and platform.
 * Accuracy: mode 1 is as stable as elimination with partial pivoting; the symmetric modes are for definite matrices.
 * Source: J. H. Wilkinson, C. Reinsch, Handbook for Automatic Computation II, contributions I/2 and I/3; N. J. Higham,
 * Accuracy and Stability of Numerical Algorithms, 2nd ed., section 14.4.
 */
ZORTAV_ENTRY void eaxinv(const int32_t* mode, const int32_t* lda, const int32_t* n, int32_t* ipiv, int32_t* ierr,
                         double* a);

/**
 * R := A⁻¹ = V·diag(1/λ)·Vᵀ for a symmetric A = V·diag(λ)·Vᵀ, by eaxeig and ebhpap.
 *
 * @param n    [in]  order; n < 1: ierr = 0 and nothing else is touched.
 * @param a    [in, destroyed] lower triangle packed by rows: element (i,j), j <= i, at position i(i-1)/2 + j.
 * @param d    [out] n elements, the eigenvalues λ by descending magnitude.
 * @param v    [out] n x n, column j the eigenvector of d(j).
 * @param w    [work] n x n.
 * @param r    [out] n x n, the inverse in full, symmetric but for rounding; written only when ierr is 0.
 * @param ierr [out] 0; l > 0: the eigen-solution failed at eigenvalue l, and d and v are as it left them; -1: A is
 *             singular to working precision, |λ|min <= n·eps·|λ|max with eps = 2^-52; d and v are the eigen-solution.
 * @return 0 when ierr is 0, else 1.
 *
 * Zeros and NaN: an eigenvalue that is not a number, or an infinite one, counts as singular.
 * Threads: those of eagemm. Stack: at most 370 KiB, 191 KiB on each other thread of the team.
 * Reproducibility: fused, by the product.
 * Source: G. H. Golub, C. F. Van Loan, Matrix Computations, 4th ed., section 8.1.
 */
ZORTAV_ENTRY int32_t eaxinvs(const int32_t* n, double* a, double* d, double* v, double* w, double* r, int32_t* ierr);

/**
 * T := A⁻¹·B and S := Bᵀ·A⁻¹·B for a symmetric A: A⁻¹ by eaxinvs, T by eagemm, S by eaxscl, columns of B against
 * columns of T.
 *
 * @param n    [in]  order of A, rows of B; n < 1: S := 0 and no other array is touched.
 * @param m    [in]  columns of B; m < 1 touches neither T nor S.
 * @param a, d, v, w, r, ierr as for eaxinvs.
 * @param b    [in]  n x m, leading dimension ldb; only its n rows are read.
 * @param ldb  [in]  leading dimension of B, >= n.
 * @param t    [out] n x m, leading dimension n; written only when ierr is 0.
 * @param s    [out] m x m, leading dimension m; written only when ierr is 0. The lower triangle is the mirror image of
 *             the upper one, to the last bit.
 * @return 0 when ierr is 0, else 1.
 *
 * Zeros and NaN: as for eaxinvs.
 * Bad arguments: eagemm stops the process for a smaller ldb in the threading mode 2; nothing else is checked.
 * Threads: those of eagemm. Stack: at most 370 KiB, 191 KiB on each other thread of the team.
 * Reproducibility: fused, by the products.
 * Source: that of eaxinvs.
 */
ZORTAV_ENTRY int32_t eaxrmc3(const int32_t* n, const int32_t* m, double* a, const double* b, const int32_t* ldb,
                             double* d, double* v, double* w, double* r, double* t, double* s, int32_t* ierr);

#endif
