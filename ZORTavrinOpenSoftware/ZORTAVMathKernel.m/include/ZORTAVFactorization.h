/* SPDX-License-Identifier: MIT */
#ifndef ZORTAV_FACTORIZATION_H
#define ZORTAV_FACTORIZATION_H

#include "ZORTAVEntryPoint.h"

ZORTAV_ENTRY int32_t eaxfch(const int32_t* n, const int32_t* n1, const int32_t* n2, const double* tol, double* a,
                            int32_t* ierr, double* piv);
ZORTAV_ENTRY void eaxfch2(const int32_t* n, const int32_t* n1, const int32_t* n2, const double* tol, double* a,
                          int32_t* ierr, double* piv);
ZORTAV_ENTRY int32_t easlff_nt(const int32_t* n, const int32_t* m, double* a, double* rmin, const double* d0,
                               const double* tolp, const double* tolr, int32_t* neq, int32_t* npiv, float* flop1,
                               float* flop2, int32_t* istat);

#endif
