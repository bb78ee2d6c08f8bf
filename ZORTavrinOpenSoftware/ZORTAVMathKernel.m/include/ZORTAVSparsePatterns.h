/* SPDX-License-Identifier: MIT */
#ifndef ZORTAV_SPARSE_PATTERNS_H
#define ZORTAV_SPARSE_PATTERNS_H

#include "ZORTAVEntryPoint.h"

ZORTAV_ENTRY void eaunle(const int32_t* ncol, const int32_t* nrow, const int32_t* reserved, const int32_t* ptr_a,
                         const int32_t* idx_a, int32_t* ptr_t, int32_t* idx_t);
ZORTAV_ENTRY void eaupnn(const int32_t* n, const int32_t* nrow, const int32_t* reserved, const int32_t* ptr_a,
                         const int32_t* idx_a, int32_t* ptr_t, int32_t* idx_t, int32_t* mark, int32_t* ptr_p,
                         int32_t* total);
ZORTAV_ENTRY void eaunln(const int32_t* n, const int32_t* reserved1, const int32_t* reserved2, const int32_t* ptr_a,
                         const int32_t* idx_a, const int32_t* ptr_t, const int32_t* idx_t, int32_t* list,
                         int32_t* idx_p);
ZORTAV_ENTRY void eaupne(const int32_t* q, const int32_t* m, const int32_t* p, const int32_t* nrows,
                         const int32_t* row_of, int32_t* ptr);

#endif
