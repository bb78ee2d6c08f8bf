/* SPDX-License-Identifier: MIT */
#ifndef ZORTAV_VECTOR_KERNELS_H
#define ZORTAV_VECTOR_KERNELS_H

#include "ZORTAVEntryPoint.h"

ZORTAV_ENTRY void e_dzero(const int32_t* n, double* x, const int32_t* incx);
ZORTAV_ENTRY void e_izero(const int32_t* n, int32_t* ix, const int32_t* incx);
ZORTAV_ENTRY void e_dcopy(const int32_t* n, const double* x, const int32_t* incx, double* y, const int32_t* incy);
ZORTAV_ENTRY void e_icopy(const int32_t* n, const int32_t* ix, const int32_t* incx, int32_t* iy, const int32_t* incy);
ZORTAV_ENTRY void e_dscal(const int32_t* n, const double* alpha, double* x, const int32_t* incx);
ZORTAV_ENTRY void drscl(const int32_t* n, const double* sa, double* x, const int32_t* incx);
ZORTAV_ENTRY void e_daxpy(const int32_t* n, const double* alpha, const double* x, const int32_t* incx, double* y,
                          const int32_t* incy);
ZORTAV_ENTRY void e_dswap(const int32_t* n, double* x, const int32_t* incx, double* y, const int32_t* incy);
ZORTAV_ENTRY double e_dasum(const int32_t* n, const double* x, const int32_t* incx);
ZORTAV_ENTRY double damax(const int32_t* n, const double* x, const int32_t* incx);
ZORTAV_ENTRY int32_t e_idamax(const int32_t* n, const double* x, const int32_t* incx);
ZORTAV_ENTRY double e_dnrm2(const int32_t* n, const double* x, const int32_t* incx);
ZORTAV_ENTRY void e_drotg(double* a, double* b, double* c, double* s);
ZORTAV_ENTRY void e_daxpyi(const int32_t* n, const double* alpha, const double* x, const int32_t* indx, double* y);
ZORTAV_ENTRY double e_ddoti(const int32_t* n, const double* x, const int32_t* indx, const double* y);
ZORTAV_ENTRY void e_dgthr(const int32_t* n, const double* y, double* x, const int32_t* indx);
ZORTAV_ENTRY void e_dsctr(const int32_t* n, const double* x, const int32_t* indx, double* y);

#endif
