/* SPDX-License-Identifier: MIT */
/* The mathematics library of the framework. The library itself stands behind its product and its Cholesky
 * factorization: one product, one factorization, whichever name it is called by. */
#ifndef ZOR_MATHEMATICS_H
#define ZOR_MATHEMATICS_H

#include <stdint.h>

#include "ZORExport.h"

/** What the framework knows of the machine's processors. */
class ZOR_EXPORT ZORCpuQuery {
 public:
  /**
   * The number of logical processors that this process may use, at least 1: those of its affinity mask, and no more
   * than a container's processor quota pays for, rounded up. It is determined at every call. Threads: may be called
   * from any thread; a thread that the caller has bound counts its own mask.
   */
  static int32_t GetCores();
};

/**
 * C := A·B or C := C + A·B for column-major A (m × k, leading dimension lda), B (k × n, ldb), C (m × n, ldc).
 *
 * @param a, b        [in] A and B.
 * @param c           [in,out] C; the rows m+1..ldc are never touched.
 * @param m, n, k     [in] rows of A and C; columns of B and C; columns of A, rows of B.
 * @param lda, ldb, ldc [in] leading dimensions.
 * @param option     [in] reserved, 0.
 * @param accumulate [in] 0 stores the product, 1 adds it to C.
 * @return 0.
 *
 * m < 1 or n < 1 touches nothing; k < 1 stores zeros when accumulate is 0 and touches nothing otherwise. Old contents
 * of C, NaN included, never reach a result that does not accumulate. Nothing else is checked.
 */
ZOR_EXPORT int32_t ZORMatrixMult(const double* a, const double* b, double* c, const int32_t* m, const int32_t* n,
                                 const int32_t* k, const int32_t* lda, const int32_t* ldb, const int32_t* ldc,
                                 const int32_t* option, const int32_t* accumulate);

/**
 * Cholesky factorization L·Lᵀ of rows n1..n2 of a packed triangle by rows, with the argument list and the failure
 * rules of eaxfch2; sums may be blocked and reordered.
 *
 * @return 0 on success, 1 when a pivot failed.
 */
ZOR_EXPORT int32_t Cholesky(const int32_t* n, const int32_t* n1, const int32_t* n2, const double* tol, double* a,
                            int32_t* ierr, double* piv);

#endif
