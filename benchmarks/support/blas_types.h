// SPDX-License-Identifier: MIT
// The published routines as Fortran compilers make them: arguments by reference, then the length of every letter.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zorbench {

using In = const std::int32_t*;
using Out = std::int32_t*;
using Letter = const char*;
using InNumbers = const double*;
using Length = std::size_t;

using Daxpy = void(In n, InNumbers alpha, InNumbers x, In incx, double* y, In incy);
using Dscal = void(In n, InNumbers alpha, double* x, In incx);
using Dcopy = void(In n, InNumbers x, In incx, double* y, In incy);
using Dswap = void(In n, double* x, In incx, double* y, In incy);
using Idamax = std::int32_t(In n, InNumbers x, In incx);
using Norm = double(In n, InNumbers x, In incx);
using Dgemv = void(Letter trans, In m, In n, InNumbers alpha, InNumbers a, In lda, InNumbers x, In incx, InNumbers beta,
                   double* y, In incy, Length);
using Dgemm = void(Letter transa, Letter transb, In m, In n, In k, InNumbers alpha, InNumbers a, In lda, InNumbers b,
                   In ldb, InNumbers beta, double* c, In ldc, Length, Length);
using Dtrsm = void(Letter side, Letter uplo, Letter trans, Letter diag, In m, In n, InNumbers alpha, InNumbers a,
                   In lda, double* b, In ldb, Length, Length, Length, Length);
using Dsyrk = void(Letter uplo, Letter trans, In n, In k, InNumbers alpha, InNumbers a, In lda, InNumbers beta,
                   double* c, In ldc, Length, Length);
using Dtpsv = void(Letter uplo, Letter trans, Letter diag, In n, InNumbers ap, double* x, In incx, Length, Length,
                   Length);
using Dtrsv = void(Letter uplo, Letter trans, Letter diag, In n, InNumbers a, In lda, double* x, In incx, Length,
                   Length, Length);
using Dpotrf = void(Letter uplo, In n, double* a, In lda, Out info, Length);
using Dpptrf = void(Letter uplo, In n, double* ap, Out info, Length);
using Dsptrf = void(Letter uplo, In n, double* ap, Out ipiv, Out info, Length);
using Dpptrs = void(Letter uplo, In n, In nrhs, InNumbers ap, double* b, In ldb, Out info, Length);
using Dpotrs = void(Letter uplo, In n, In nrhs, InNumbers a, In lda, double* b, In ldb, Out info, Length);
using Dspev = void(Letter jobz, Letter uplo, In n, double* ap, double* w, double* z, In ldz, double* work, Out info,
                   Length, Length);
using Dspevd = void(Letter jobz, Letter uplo, In n, double* ap, double* w, double* z, In ldz, double* work, In lwork,
                    Out iwork, In liwork, Out info, Length, Length);
using Dgetrf = void(In m, In n, double* a, In lda, Out ipiv, Out info);
using Dgetri = void(In n, double* a, In lda, In ipiv, double* work, In lwork, Out info);
using Dsytrf = void(Letter uplo, In n, double* a, In lda, Out ipiv, double* work, In lwork, Out info, Length);
using Dsytri = void(Letter uplo, In n, double* a, In lda, In ipiv, double* work, Out info, Length);

}  // namespace zorbench
