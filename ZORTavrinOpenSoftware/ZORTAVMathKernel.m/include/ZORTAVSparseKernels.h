/* SPDX-License-Identifier: MIT */
#ifndef ZORTAV_SPARSE_KERNELS_H
#define ZORTAV_SPARSE_KERNELS_H

#include "ZORTAVEntryPoint.h"

ZORTAV_ENTRY void eaxmvm(const int32_t* mode, const int32_t* nnz, const int32_t* nrows, const int32_t* n,
                         const int32_t* nvec, const int32_t* colidx, const int32_t* rowptr, const double* values,
                         const double* x, double* y);
ZORTAV_ENTRY void eaxraz(const int32_t* type, void* array, const int32_t* count);
ZORTAV_ENTRY void eaxmac(void* array, const int32_t* count, const char* character,
                         ZORTAV_HIDDEN_LENGTH(character_length));

#endif
