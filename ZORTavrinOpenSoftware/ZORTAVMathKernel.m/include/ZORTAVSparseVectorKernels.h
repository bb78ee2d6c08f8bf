/* SPDX-License-Identifier: MIT */
/* Operations between a sparse vector and a full one. Included by ZORTAVVectorKernels.h, which states the common rules.
 *
 * A sparse vector is n values x(1..n) with the 1-based places indx(1..n) that they have in the full vector y, both
 * contiguous. Indices are used as given: no bounds check, any order, repetitions allowed.
 *
 * Source: D. S. Dodson, R. G. Grimes, J. G. Lewis: Sparse extensions to the Fortran basic linear algebra subprograms,
 * ACM TOMS 17 (1991). */
#ifndef ZORTAV_SPARSE_VECTOR_KERNELS_H
#define ZORTAV_SPARSE_VECTOR_KERNELS_H

#include "ZORTAVEntryPoint.h"

/**
 * y(indx(i)) := y(indx(i)) + alpha*x(i) for i = 1..n in ascending order.
 *
 * @param n     [in]     number of values.
 * @param alpha [in]     factor.
 * @param x     [in]     n values.
 * @param indx  [in]     n places in y, from 1.
 * @param y     [in,out] full vector, at least max indx(i) elements.
 *
 * Elements:        the places listed are read and written, no others; repeated places add up in ascending i.
 * Aliasing:        y may overlap neither x nor indx.
 * Zeros and NaN:   alpha = 0 (or -0) returns at once: x and y are not read and a NaN in x does not reach y.
 * Reproducibility: fixed order.
 */
ZORTAV_ENTRY void e_daxpyi(const int32_t* n, const double* alpha, const double* x, const int32_t* indx, double* y);

/**
 * Returns x(1)*y(indx(1)) + ... + x(n)*y(indx(n)).
 *
 * @param n    [in] number of values.
 * @param x    [in] n values.
 * @param indx [in] n places in y, from 1.
 * @param y    [in] full vector, at least max indx(i) elements.
 *
 * Elements:        the places listed are read.
 * Aliasing:        all arguments may overlap.
 * Zeros and NaN:   zeros are multiplied like other values.
 * Reproducibility: fixed order, that of e_dasum at increment 1 with the address of x. The order, and so the last bits,
 *                  depend on whether x lies on a 16-byte boundary, an 8-byte boundary or neither.
 */
ZORTAV_ENTRY double e_ddoti(const int32_t* n, const double* x, const int32_t* indx, const double* y);

/**
 * x(i) := y(indx(i)) for i = 1..n in ascending order (gather).
 *
 * @param n    [in]  number of values.
 * @param y    [in]  full vector, at least max indx(i) elements.
 * @param x    [out] n values.
 * @param indx [in]  n places in y, from 1.
 *
 * Elements:        all of x is written, the places listed are read.
 * Aliasing:        x may overlap neither y nor indx.
 * Zeros and NaN:   values are copied bit for bit.
 * Reproducibility: exact.
 */
ZORTAV_ENTRY void e_dgthr(const int32_t* n, const double* y, double* x, const int32_t* indx);

/**
 * y(indx(i)) := x(i) for i = 1..n in ascending order (scatter).
 *
 * @param n    [in]  number of values.
 * @param x    [in]  n values.
 * @param indx [in]  n places in y, from 1.
 * @param y    [out] full vector, at least max indx(i) elements.
 *
 * Elements:        the places listed are written, no others; of values for one place the last stays.
 * Aliasing:        y may overlap neither x nor indx.
 * Zeros and NaN:   values are copied bit for bit.
 * Reproducibility: exact.
 */
ZORTAV_ENTRY void e_dsctr(const int32_t* n, const double* x, const int32_t* indx, double* y);

#endif
