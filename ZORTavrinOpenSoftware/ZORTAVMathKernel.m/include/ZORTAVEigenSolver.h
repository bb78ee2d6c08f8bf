/* SPDX-License-Identifier: MIT */
#ifndef ZORTAV_EIGEN_SOLVER_H
#define ZORTAV_EIGEN_SOLVER_H

#include "ZORTAVEntryPoint.h"

ZORTAV_ENTRY int32_t eaxeig(const int32_t* n, const int32_t* ord, double* a, double* d, double* v, double* e,
                            int32_t* ierr);
ZORTAV_ENTRY void eaxetr(const int32_t* n, double* a, double* d, double* e);
ZORTAV_ENTRY int32_t eaxeql(const int32_t* n, double* d, double* e, double* v, int32_t* ierr);
ZORTAV_ENTRY void eaxeor(const int32_t* ord, const int32_t* n, double* d, double* v);
ZORTAV_ENTRY void eaxevp(const int32_t* n, const double* a, double* v);

#endif
