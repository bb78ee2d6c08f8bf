/* SPDX-License-Identifier: MIT */
/* The product of a sparse matrix with several vectors, and the clearing of arrays by type.
 *
 * Lower compressed-row storage of a sparse n-by-n matrix whose rows 1..nrows are stored; positions and indices count
 * from 1:
 *
 *   values  the stored entries, row after row; the last entry of every row is its diagonal
 *   colidx  the column of each entry; a diagonal's is never read
 *   rowptr  nrows+1 numbers: rowptr(i+1) is the position of the diagonal of row i; rowptr(1) is never read, it stands
 *           for 0
 *
 * Row i is at positions rowptr(i)+1..rowptr(i+1); the columns before its diagonal lie below i, in any order. */
#ifndef ZORTAV_SPARSE_KERNELS_H
#define ZORTAV_SPARSE_KERNELS_H

#include "ZORTAVEntryPoint.h"

/**
 * y := A·x for nvec vectors: A symmetric with its lower triangle L stored (mode 1), or L alone (mode 2).
 *
 *   for each vector, i = 1..nrows:  s := A(i,i)·x(i)
 *                                   for every entry a = A(i,j) of row i as stored:
 *                                     s := s + a·x(j);  in mode 1 also y(j) := y(j) + a·x(i), where y starts from 0
 *                                   y(i) := s
 *
 * The last step is an assignment: an entry whose column lies above its row loses its contribution to y(j), unless
 * j > nrows.
 *
 * When nnz = n the matrix is a diagonal, whatever mode is: y(i,v) := values(i)·x(i,v) for i = 1..n, v = 1..nvec, and
 * for the first vector also when nvec < 1; nrows, colidx and rowptr are then not read.
 *
 * @param mode   [in] 1 or 2; any other value: nothing is done, except for a diagonal.
 * @param nnz    [in] stored entries; only compared with n.
 * @param nrows  [in] stored rows, 0..n.
 * @param n      [in] order of the matrix; length and leading dimension of the vectors.
 * @param nvec   [in] vectors; none below 1.
 * @param colidx [in] nnz columns in 1..n.
 * @param rowptr [in] nrows+1 positions.
 * @param values [in] nnz numbers.
 * @param x      [in] n-by-nvec, column-major, leading dimension n.
 * @param y      [out] as x. Mode 1 writes all n·nvec numbers, mode 2 those of rows 1..nrows. Old contents are never
 *               used. While mode 1 runs, y holds intermediate results in another order.
 *
 * Elements: reads rows 1..nrows as stored; rowptr(1) and the columns of the diagonals are not read.
 * Aliasing: y overlaps no other argument.
 * Zeros and NaN: every stored entry takes part; NaN and infinity propagate.
 * Bad arguments: arguments are not checked.
 * Threads: mode 1 divides groups of four vectors (after the first nvec mod 4, which the caller's thread computes) among
 * the default OpenMP team; safe to call from several threads with different y. Positions are 64-bit. Memory: no heap;
 * less than 8 KiB of stack on every thread.
 * Reproducibility: fixed order; the same bits for any team, instruction set and platform. Products and sums are rounded
 * separately.
 * Source: row-wise symmetric product with shared loads, as in SPARSKIT and OSKI; register blocking after Mellor-Crummey
 * and Garvin, Int. J. High Perform. Comput. Appl. 18, 2004.
 */
ZORTAV_ENTRY void eaxmvm(const int32_t* mode, const int32_t* nnz, const int32_t* nrows, const int32_t* n,
                         const int32_t* nvec, const int32_t* colidx, const int32_t* rowptr, const double* values,
                         const double* x, double* y);

/**
 * Clears count elements of an array by the code of their type:
 *
 *   2        16-bit integers, to 0
 *   3, 4     32-bit integers, to 0 (as e_izero with increment 1)
 *   5        doubles, to 0 (as e_dzero with increment 1)
 *   -len     character strings of len bytes, to blanks
 *   others   nothing is done
 *
 * @param type  [in] the code.
 * @param array [out] the elements.
 * @param count [in] how many, at least 0.
 *
 * Elements: the first count elements are written, none is read.
 * Aliasing: type and count lie outside the array.
 * Zeros and NaN: NaNs are cleared like other values.
 * Bad arguments: nothing is checked. A negative count writes nothing for codes 2 and below 0 and is not guarded for
 * codes 3, 4 and 5.
 * Threads: safe for different arrays.
 * Reproducibility: exact.
 * Source: elementary.
 */
ZORTAV_ENTRY void eaxraz(const int32_t* type, void* array, const int32_t* count);

/**
 * array(i) := character for count bytes.
 *
 * @param array     [out] count bytes.
 * @param count     [in] how many; nothing is written below 1.
 * @param character [in] its first byte is taken.
 *
 * Elements: the first count bytes are written, none is read.
 * Aliasing: character may lie inside array.
 * Zeros and NaN: bytes have none.
 * Bad arguments: nothing is checked.
 * Threads: safe for different arrays.
 * Reproducibility: exact.
 * Source: elementary.
 */
ZORTAV_ENTRY void eaxmac(void* array, const int32_t* count, const char* character,
                         ZORTAV_HIDDEN_LENGTH(character_length));

#endif
