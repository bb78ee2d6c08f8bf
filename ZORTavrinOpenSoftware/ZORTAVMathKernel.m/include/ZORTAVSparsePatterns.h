/* SPDX-License-Identifier: MIT */
/* Conversions of sparse patterns. No routine reads or writes a matrix value.
 *
 * A compressed-row pattern of a matrix with r rows; positions and indices count from 1:
 *
 *   ptr  r+1 numbers: ptr(1) = 0, ptr(i+1) is the number of entries in rows 1..i
 *   idx  the column of each entry; row i is at positions ptr(i)+1..ptr(i+1)
 *
 * An empty row repeats the pointer before it. Entry counts stay below 2^31.
 *
 * What holds for all four routines
 * - Elements: the arrays are as long as stated; reserved arguments are never looked at.
 * - Aliasing: arrays do not overlap.
 * - Zeros and NaN: there are no values.
 * - Bad arguments: nothing is checked.
 * - Threads: any number of calls at once with different output and work arrays.
 * - Memory: no heap; less than 8 KiB of stack.
 * - Reproducibility: exact. */
#ifndef ZORTAV_SPARSE_PATTERNS_H
#define ZORTAV_SPARSE_PATTERNS_H

#include "ZORTAVEntryPoint.h"

/**
 * The pattern of Aᵀ. Every row of it ascends; a column that a row of A holds twice stays twice.
 *
 * @param ncol     [in] columns of A, at least 0.
 * @param nrow     [in] rows of A, at least 0.
 * @param reserved not read; may be null.
 * @param ptr_a    [in] nrow+1 row pointers of A.
 * @param idx_a    [in] columns in 1..ncol, in any order within a row.
 * @param ptr_t    [out] ncol+1 row pointers of Aᵀ.
 * @param idx_t    [out] as many row numbers of A as A has entries.
 *
 * Source: counting sort; Gustavson, "Two fast algorithms for sparse matrices", ACM TOMS 4, 1978.
 */
ZORTAV_ENTRY void eaunle(const int32_t* ncol, const int32_t* nrow, const int32_t* reserved, const int32_t* ptr_a,
                         const int32_t* idx_a, int32_t* ptr_t, int32_t* idx_t);

/**
 * Counts P, the pattern of Aᵀ·A without its diagonal: row i of P holds every column j other than i that shares a row of
 * A with column i.
 *
 * @param n        [in] columns of A, order of P, at least 0.
 * @param nrow     [in] rows of A, at least 0.
 * @param reserved not read; may be null.
 * @param ptr_a    [in] nrow+1 row pointers of A.
 * @param idx_a    [in] columns in 1..n.
 * @param ptr_t    [out] n+1 row pointers of Aᵀ, as eaunle gives them.
 * @param idx_t    [out] column indices of Aᵀ.
 * @param mark     [work] n numbers.
 * @param ptr_p    [out] n+1 row pointers of P.
 * @param total    [out] entries of P.
 *
 * Source: symbolic product with a stamped marker; Gustavson, ACM TOMS 4, 1978.
 */
ZORTAV_ENTRY void eaupnn(const int32_t* n, const int32_t* nrow, const int32_t* reserved, const int32_t* ptr_a,
                         const int32_t* idx_a, int32_t* ptr_t, int32_t* idx_t, int32_t* mark, int32_t* ptr_p,
                         int32_t* total);

/**
 * Fills P, after eaupnn: the columns of its rows, one row after the other, each ascending.
 *
 * @param n         [in] order of P.
 * @param reserved1 not read; may be null.
 * @param reserved2 not read; may be null.
 * @param ptr_a     [in] row pointers of A.
 * @param idx_a     [in] columns in 1..n.
 * @param ptr_t     [in] n+1 row pointers of Aᵀ, as eaupnn left them.
 * @param idx_t     [in] column indices of Aᵀ, as eaupnn left them.
 * @param list      [work] n+1 numbers. Afterwards list(2..n+1) is 0 and, for n > 0, list(1) is the first column of the
 *                  last row of P, n+1 when that row is empty.
 * @param idx_p     [out] as many columns as eaupnn counted.
 *
 * Source: as eaupnn; a row is ordered by sorting or by a walk through its range, whichever is shorter.
 */
ZORTAV_ENTRY void eaunln(const int32_t* n, const int32_t* reserved1, const int32_t* reserved2, const int32_t* ptr_a,
                         const int32_t* idx_a, const int32_t* ptr_t, const int32_t* idx_t, int32_t* list,
                         int32_t* idx_p);

/**
 * Row pointers from the row numbers of sorted entries, for a matrix of two blocks of rows one above the other: ptr(l+1)
 * is the last entry of row l, and a row without entries repeats the pointer before it. Where entries are not sorted,
 * the largest entry number of a row counts.
 *
 * @param q      [in] entries in all.
 * @param m      [in] entries of the first block, at most q.
 * @param p      [in] rows of the first block.
 * @param nrows  [in] rows in all, at least p.
 * @param row_of [in] q row numbers, each counted from 1 within its block.
 * @param ptr    [out] nrows+1 row pointers.
 *
 * Source: elementary.
 */
ZORTAV_ENTRY void eaupne(const int32_t* q, const int32_t* m, const int32_t* p, const int32_t* nrows,
                         const int32_t* row_of, int32_t* ptr);

#endif
