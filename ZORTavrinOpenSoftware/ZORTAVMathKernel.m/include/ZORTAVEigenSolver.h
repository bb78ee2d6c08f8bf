/* SPDX-License-Identifier: MIT */
/* All eigenvalues and eigenvectors of a dense real symmetric matrix given as a packed triangle.
 *
 *   A = Z·diag(d)·Zᵀ:   T = Qᵀ·A·Q (eaxetr),   T = S·diag(d)·Sᵀ (eaxeql),   order (eaxeor),   Z = Q·S (eaxevp).
 *
 * Packed by rows: element (i, j), j <= i, of the lower triangle stands at position i(i-1)/2 + j, counted from 1, so
 * that row i is contiguous and ends with its diagonal. V is n x n by columns with leading dimension n.
 *
 * What holds for every entry point here
 * - Elements: those that are not named are neither read nor written.
 * - Aliasing: arrays must not overlap each other.
 * - Zeros and NaN: zeros, infinities and NaN take part in the arithmetic like any number; nothing is scaled against
 *   overflow or underflow.
 * - Bad arguments: none is checked and no message is written.
 * - Threads: reentrant; calls on different data may run at the same time. No heap memory is used.
 *   The stack need is below 2 KiB but for eaxeig and eaxeql, which take 370 KiB, and eaxevp, which takes 40 KiB.
 * - Reproducibility: the same bits on every instruction-set level, platform and number of threads. No operation is
 *   fused. Eight lanes, unless another class is named: a sum marked (8) is taken in eight partial sums, term k in sum
 *   (k-1) mod 8 in ascending order, joined as ((s0 + s4) + (s2 + s6)) + ((s1 + s5) + (s3 + s7)). */
#ifndef ZORTAV_EIGEN_SOLVER_H
#define ZORTAV_EIGEN_SOLVER_H

#include "ZORTAVEntryPoint.h"

/**
 * A = Z·diag(d)·Zᵀ, the whole solution: eaxetr, V := 0, eaxeql, eaxeor, eaxevp, in this order.
 *
 * @param n    [in] order of A. n < 1: a(1) is read, d(1) = a(1), e(1) = 0 and v(1) = 1 are written, and a negative n
 *             clears the first n·n elements of v before that; 0 is returned.
 * @param ord  [in] 1: eigenvalues ascending; any other value: descending by absolute value.
 * @param a    [in, destroyed] packed by rows, n(n+1)/2 elements.
 * @param d    [out] n elements, the eigenvalues.
 * @param v    [out] n x n, column j the eigenvector of d(j), of length 1; its sign is not normalised.
 * @param e    [work] n elements.
 * @param ierr [out] written only on failure: the index of the eigenvalue that did not converge in 30 iterations.
 * @return 0; 1 when the iteration failed. Then d and v stand as the iteration left them, neither ordered nor
 *         transformed back.
 *
 * Zeros and NaN: a NaN in A ends in result 1 or in NaN eigenpairs; a square beyond the range of a double (elements
 * above about 1e154) acts like one, and rows whose squares all vanish (elements below about 1e-162) count as zero but
 * for their last off-diagonal element.
 * Source: that of the stages.
 */
ZORTAV_ENTRY int32_t eaxeig(const int32_t* n, const int32_t* ord, double* a, double* d, double* v, double* e,
                            int32_t* ierr);

/**
 * T = Qᵀ·A·Q, tridiagonal, by Householder reflectors I − u·uᵀ/h, rows taken from the last one upward.
 *
 *   for i = n, ..., 3, with l = i − 1:
 *     h = Σ a(i,k)² over k <= l (8), not scaled
 *     h = 0:  e(i) = a(i,l);  d(i) = a(i,i);  a(i,i) := 0
 *     else:   f = a(i,l);  g = −√h for f >= 0, +√h for f < 0;  e(i) = g;  h := h − f·g;  a(i,l) := f − g
 *             u = a(i,1..l);  p = A·u·(1/h) over the leading l x l block
 *             p := p − (Σ p(j)·u(j) (8) / (h + h))·u
 *             A := A − u·pᵀ − p·uᵀ, the two products subtracted one after the other
 *             d(i) = a(i,i);  a(i,i) := h
 *
 * Element j of A·u is the sum of a(j,k)·u(k) over k <= j (8), to which the terms a(k,j)·u(k), k > j, are added in
 * ascending order.
 *
 * @param n [in] order of A. n < 2: d(1) = a(1), e(1) = 0, and nothing else is touched.
 * @param a [in/out] packed by rows, n(n+1)/2 elements. On return row i >= 3 holds the reflector u in its first i − 1
 *          elements and h on its diagonal; h = 0 marks a row without a reflector. Rows 1 and 2 hold what is left of A.
 * @param d [out] n elements, the diagonal of T.
 * @param e [out] n elements, e(i) the element (i, i−1) of T for i >= 2; e(1) = 0.
 *
 * Source: Martin, Reinsch, Wilkinson, Handbook for Automatic Computation II, contribution II/2 (tred3), without the
 * scaling of the rows.
 */
ZORTAV_ENTRY void eaxetr(const int32_t* n, double* a, double* d, double* e);

/**
 * T = S·diag(d)·Sᵀ and V := V·S by the QL algorithm with implicit shifts; V is the identity on entry but for its
 * diagonal, which is set here, so that a cleared V returns S.
 *
 * An element e(m) is negligible when |e(m)| + dd = dd exactly, dd = |d(m)| + |d(m+1)|. A plane rotation of length zero
 * is not guarded against: it gives NaN, and the iteration fails.
 *
 * @param n    [in] order of T. n < 2: v(1) = 1 is written and nothing else is touched; 0 is returned.
 * @param d    [in/out] n elements, the diagonal of T; on return its eigenvalues, in no particular order.
 * @param e    [in, destroyed] n elements, e(i) the element (i, i−1) of T for i >= 2; e(1) is not read.
 * @param v    [in/out] n x n; zero off its diagonal to get the eigenvectors of T. The diagonal is not read.
 * @param ierr [out] written only on failure: the index l of the eigenvalue that did not converge in 30 iterations.
 * @return 0; 1 when the iteration failed. Then d(1..l−1) have converged, and d and v hold all rotations done so far.
 *
 * Every element of d, e and v is the result of the textbook loop, operation by operation: a rotation takes the
 * elements x, t of columns i and i + 1 to c·x − s·t and s·x + c·t, each product rounded. Rotations are collected on the
 * stack and applied several sweeps at a time: 19456 of them, or four sweeps up to order 4864; up to order 1200 half as
 * many, while the next ones are computed. Up to order 4864, and when the upper triangle of V is +0 on entry, the
 * rotations of zeros that are still zeros are left out; their signs are kept.
 *
 * Reproducibility: fixed order.
 * Source: Dubrulle, Martin, Wilkinson, Handbook for Automatic Computation II, contribution II/4 (imtql2).
 */
ZORTAV_ENTRY int32_t eaxeql(const int32_t* n, double* d, double* e, double* v, int32_t* ierr);

/**
 * Orders the eigenvalues, and the columns of V with them, by selection: place i takes the first of the best of the
 * pairs i..n, which changes places with it.
 *
 * @param ord [in] 1: d ascending; any other value: |d| descending. Of equals the earlier one is taken. A NaN is neither
 *            before nor behind any number.
 * @param n   [in] number of pairs and order of V; below 2 nothing is touched.
 * @param d   [in/out] n elements.
 * @param v   [in/out] n x n; whole columns change places.
 *
 * Reproducibility: exact.
 * Source: selection sort.
 */
ZORTAV_ENTRY void eaxeor(const int32_t* ord, const int32_t* n, double* d, double* v);

/**
 * V := Q·V with the reflectors that eaxetr left in A: for i = 3, ..., n, u = a(i,1..i−1), h = a(i,i), and every column
 * v of V: v := v − (uᵀ·v/h)·u in its first i − 1 elements. A row with h = 0 is stepped over.
 *
 * The rows 3..34, 35..66, ... are applied together. With u1, u2, ... the reflectors of such a block, every sum (8) and
 * over k from 1 to the length of the longest, where shorter ones count as continued by zeros: s(r) = Σ ur(k)·v(k);
 * w(r) = (s(r) − Σ g(r,q)·w(q))·(1/h(r)) over q < r, one after the other, with g(r,q) = Σ ur(k)·uq(k); then v(k) := v(k)
 * − Σ ur(k)·w(r), r ascending, one after the other. So an infinity or a NaN in a row of V up to the length of a block's
 * longest reflector reaches what its shorter ones change, too.
 *
 * @param n [in] order of A and V; below 3 nothing is touched.
 * @param a [in] packed by rows, n(n+1)/2 elements, as eaxetr leaves it; rows 1 and 2 are not read.
 * @param v [in/out] n x n.
 *
 * Source: Martin, Reinsch, Wilkinson, Handbook for Automatic Computation II, contribution II/2 (trbak3); blocks after
 * Schreiber and Van Loan, SIAM J. Sci. Stat. Comput. 10 (1989), and Puglisi, SIAM J. Sci. Stat. Comput. 13 (1992).
 */
ZORTAV_ENTRY void eaxevp(const int32_t* n, const double* a, double* v);

#endif
