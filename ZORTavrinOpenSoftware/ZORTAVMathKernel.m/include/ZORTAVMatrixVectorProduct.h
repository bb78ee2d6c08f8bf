/* SPDX-License-Identifier: MIT */
/* The general matrix-vector product and the kernels that it is cut into.
 *
 * What holds for all routines here and is not repeated below:
 *
 *   Formula          y := alpha*A*x + beta*y or y := alpha*A'*x + beta*y.
 *   Matrix           A is m x n, stored column by column: element (i, j) at (i-1) + (j-1)*lda. The rows m+1..lda are
 *                    never touched.
 *   Vectors          the one that A's columns meet (x of A*x, y of A'*x) has n elements, the other one m; element i of
 *                    len lies at 1 + (i-1)*inc, or, for a negative increment where one is allowed, at 1 + (1-len)*inc
 *                    + (i-1)*inc.
 *                    "Contiguous": both increments are 1.
 *   Elements         all elements of A, x and y are read, those of y written. m = 0, n = 0, or alpha = 0 with beta = 1
 *                    touches nothing.
 *   Aliasing         y may not overlap A or x. Scalars are read before y is written.
 *   Alignment        any, even off the element's own boundary; that of x takes part in the order of some sums, below.
 *   Units            none; results have the units that the formula gives them.
 *   Zeros and NaN    NaN propagates by the arithmetic of the formula; which NaN results is not fixed. The kernels
 *                    multiply y by beta also when beta = 0: a NaN or infinity that y held before reaches the result.
 *   Bad arguments    the kernels check nothing; eagemv and dgemvf check everything, below.
 *   Threads          no state, no locks, no threads of its own: any number of callers at once on disjoint y. Stack: at
 *                    most 24 KiB; nothing on the heap.
 *   Reproducibility  fixed order: the operations and their order, stated for each routine, are part of the interface;
 *                    products are rounded before they are added, never fused. Same bits at every instruction-set level,
 *                    on every platform.
 *   Source           J. J. Dongarra, J. Du Croz, S. Hammarling, R. J. Hanson: An extended set of Fortran basic linear
 *                    algebra subprograms, ACM TOMS 14 (1988).
 *
 * "Paired sum" of a start value and n terms: the terms go in turn to two running sums, of which the first starts at the
 * start value and the second at 0; then the second is added to the first, and a last odd term to that. Where the vector
 * in question is contiguous and lies on an 8-byte but not on a 16-byte boundary, the first term is added to the start
 * value alone and the pairs begin with the second. Without a pair (n = 1, n = 2 with the first term alone, increment 0,
 * or a contiguous vector off the 8-byte boundary) the terms are added one at a time. */
#ifndef ZORTAV_MATRIX_VECTOR_PRODUCT_H
#define ZORTAV_MATRIX_VECTOR_PRODUCT_H

#include "ZORTAVEntryPoint.h"

/**
 * y := alpha*op(A)*x + beta*y, with op(A) = A or A'.
 *
 * @param trans [in]     one character: "N" op(A) = A; "T" or "C" op(A) = A'. Small letters are refused, on purpose.
 * @param m     [in]     rows of A, >= 0.
 * @param n     [in]     columns of A, >= 0.
 * @param alpha [in]     scalar.
 * @param a     [in]     A.
 * @param lda   [in]     leading dimension of A, >= max(1, m) whatever trans is.
 * @param x     [in]     vector of n elements for "N", else m.
 * @param incx  [in]     increment of x, not 0.
 * @param beta  [in]     scalar.
 * @param y     [in,out] vector of m elements for "N", else n.
 * @param incy  [in]     increment of y, not 0.
 *
 * Zeros and NaN: alpha = 0 reads neither A nor x: beta = 0 then clears y with e_dzero, NaNs included, and any other
 * beta but 1 scales it with e_dscal. Otherwise beta = 0 does not clear y (see above), except on the way through dgemvf.
 *
 * Bad arguments: a letter other than these, a negative m or n, an lda that is too small or an increment 0 ends the
 * process with "DGEMV Fatal Error" on standard error; y is untouched. This comes before every quick return.
 *
 * Reproducibility: the orders of the routines that get the pieces, with m8 = m - m mod 8 and blocks of 64 columns, the
 * last one shorter.
 * - An increment < 0: dgemvf on the whole product.
 * - "N": rows 1..m8 by dgemv32_n on each block in turn, beta for the first and 1 for the others; the last rows by
 *   dgemv_n on all columns.
 * - "T" or "C", m < 8: dgemv_t on the whole product.
 * - "T" or "C", otherwise: for each block dgemv32_t on rows 1..m8, or dgemv_t where the vectors are not contiguous and
 *   the block's width is no multiple of 4; then dgemv_t with beta = 1 on the last rows.
 */
ZORTAV_ENTRY void eagemv(const char* trans, const int32_t* m, const int32_t* n, const double* alpha, const double* a,
                         const int32_t* lda, const double* x, const int32_t* incx, const double* beta, double* y,
                         const int32_t* incy, ZORTAV_HIDDEN_LENGTH(trans_length));

/**
 * y := alpha*A*x + beta*y.
 *
 * @param m     [in]     rows of A, >= 0.
 * @param n     [in]     columns of A, >= 0.
 * @param alpha [in]     scalar.
 * @param a     [in]     A.
 * @param lda   [in]     leading dimension of A.
 * @param x     [in]     vector of n elements.
 * @param incx  [in]     increment of x, >= 1.
 * @param beta  [in]     scalar.
 * @param y     [in,out] vector of m elements.
 * @param incy  [in]     increment of y, >= 1.
 *
 * Reproducibility: y(i) is the paired sum of beta*y(i) and the terms a(i,j)*(alpha*x(j)), j = 1..n, paired along x;
 *                  lda = 0 makes no pairs. A row's bits depend neither on m nor on the row's place.
 */
ZORTAV_ENTRY void dgemv_n(const int32_t* m, const int32_t* n, const double* alpha, const double* a, const int32_t* lda,
                          const double* x, const int32_t* incx, const double* beta, double* y, const int32_t* incy);

/**
 * y := alpha*A*x + beta*y for the rows 1..m - m mod 4: dgemv_n, with the same bits, which leaves the last rows alone.
 *
 * @param m     [in]     rows of A, a multiple of 4; eagemv gives multiples of 8.
 * @param n, alpha, a, lda, x, incx, beta, y, incy as for dgemv_n; eagemv gives at most 64 columns.
 */
ZORTAV_ENTRY void dgemv32_n(const int32_t* m, const int32_t* n, const double* alpha, const double* a,
                            const int32_t* lda, const double* x, const int32_t* incx, const double* beta, double* y,
                            const int32_t* incy);

/**
 * y := alpha*A'*x + beta*y.
 *
 * @param m     [in]     rows of A, >= 0.
 * @param n     [in]     columns of A, >= 0.
 * @param alpha [in]     scalar.
 * @param a     [in]     A.
 * @param lda   [in]     leading dimension of A.
 * @param x     [in]     vector of m elements.
 * @param incx  [in]     increment of x, >= 1.
 * @param beta  [in]     scalar.
 * @param y     [in,out] vector of n elements.
 * @param incy  [in]     increment of y, >= 1.
 *
 * Reproducibility: y(j) is the paired sum of beta*y(j) and the terms a(i,j)*(alpha*x(i)), i = 1..m, paired along x. A
 *                  column's bits depend neither on n nor on the column's place.
 */
ZORTAV_ENTRY void dgemv_t(const int32_t* m, const int32_t* n, const double* alpha, const double* a, const int32_t* lda,
                          const double* x, const int32_t* incx, const double* beta, double* y, const int32_t* incy);

/**
 * y := alpha*A'*x + beta*y for the rows 1..m - m mod 4 when the vectors are contiguous, otherwise for all rows and the
 * columns 1..n - n mod 4; what is left is not touched.
 *
 * @param m     [in]     rows of A, a multiple of 4; eagemv gives multiples of 8.
 * @param n     [in]     columns of A, a multiple of 4 unless the vectors are contiguous; eagemv gives at most 64.
 * @param alpha, a, lda, x, incx, beta, y, incy as for dgemv_t.
 *
 * Reproducibility: not contiguous: dgemv_t, with the same bits. Contiguous: the rows i..i+3 of a column make a group,
 *
 *   g = ((a(i)*x(i) + a(i+1)*x(i+1)) + a(i+2)*x(i+2)) + a(i+3)*x(i+3).
 *
 * With less than eight groups the products alpha*g are added to beta*y(j) one at a time. Otherwise four running sums
 * s1..s4 start at beta*y(j), 0, 0, 0 and take alpha*g of the groups in turn, as long as there are eight more; then
 * s := (s1 + s3) + (s2 + s4), and the groups left over are added to s one at a time. The alignment of x takes no part.
 */
ZORTAV_ENTRY void dgemv32_t(const int32_t* m, const int32_t* n, const double* alpha, const double* a,
                            const int32_t* lda, const double* x, const int32_t* incx, const double* beta, double* y,
                            const int32_t* incy);

/**
 * y := alpha*op(A)*x + beta*y, with op(A) = A or A', for increments of either sign.
 *
 * @param trans, m, n, alpha, a, lda, x, incx, beta, y, incy as for eagemv; trans_length likewise.
 *
 * Zeros and NaN: beta = 0 clears y, NaNs included. Of A*x the columns with x(j) = 0 are left out: a NaN or infinity in
 * such a column does not reach y. alpha = 0 reads neither A nor x.
 *
 * Bad arguments: the first in the order of the list writes the record " DGEMV Error :" and its number, right-justified
 * after a blank in eleven columns, to standard output and returns; y is untouched. The numbers: 1 trans, 2 m, 3 n,
 * 6 lda, 8 incx, 11 incy. This comes before every quick return.
 *
 * Reproducibility: y is first cleared (e_dzero) or scaled (e_dscal), unless beta = 1.
 * - "N": the terms (alpha*x(j))*a(i,j) are added to y(i) one at a time, j = 1..n.
 * - "T" or "C": alpha*d is added to y(j), with d the paired sum of 0 and the terms a(i,j)*x(i), i = 1..m; contiguous is
 *   x when incx = 1, whatever incy is; m < 8 makes no pairs.
 */
ZORTAV_ENTRY void dgemvf(const char* trans, const int32_t* m, const int32_t* n, const double* alpha, const double* a,
                         const int32_t* lda, const double* x, const int32_t* incx, const double* beta, double* y,
                         const int32_t* incy, ZORTAV_HIDDEN_LENGTH(trans_length));

#endif
