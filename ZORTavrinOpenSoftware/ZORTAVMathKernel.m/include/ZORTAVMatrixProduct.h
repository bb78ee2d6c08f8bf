/* SPDX-License-Identifier: MIT */
#ifndef ZORTAV_MATRIX_PRODUCT_H
#define ZORTAV_MATRIX_PRODUCT_H

#include "ZORTAVEntryPoint.h"

ZORTAV_ENTRY void eagemm(const char* transa, const char* transb, const int32_t* m, const int32_t* n, const int32_t* k,
                         const double* alpha, const double* a, const int32_t* lda, const double* b, const int32_t* ldb,
                         const double* beta, double* c, const int32_t* ldc, ZORTAV_HIDDEN_LENGTH(transa_length),
                         ZORTAV_HIDDEN_LENGTH(transb_length));
ZORTAV_ENTRY int32_t prdgemm(const char* transa, const char* transb, const int32_t* m, const int32_t* n,
                             const int32_t* k, const double* alpha, const double* a, const int32_t* lda,
                             const double* b, const int32_t* ldb, const double* beta, double* c, const int32_t* ldc,
                             ZORTAV_HIDDEN_LENGTH(transa_length), ZORTAV_HIDDEN_LENGTH(transb_length));

#endif
