! SPDX-License-Identifier: MIT
!
! Explicit interfaces of every plain entry point of ZORTAVMathKernel. The headers named below document each of them.
!
!   use zortav_math_kernel
!   call eagemm('N', 'N', m, n, k, 1d0, a, lda, b, ldb, 0d0, c, ldc)
!
! Arguments are passed by reference; matrices are stored column by column, as Fortran does. Arrays may have any rank.
! Results and work arrays are intent(inout) where not every call writes all of them. An option letter is a character
! argument; its hidden length, which the library takes as a 64-bit integer behind the listed arguments, is passed by
! the procedures at the end of this file (the names ending in _c are theirs). A text for the listing ends with
! char(0): call ehprint('done'//achar(0)).
module zortav_math_kernel
  use, intrinsic :: iso_c_binding, only: c_char, c_double, c_float, c_funptr, c_int32_t, c_int64_t, c_ptr
  implicit none
  public
  private :: c_char, c_double, c_float, c_funptr, c_int32_t, c_int64_t, c_ptr

  ! The levels of ehgetisa and ehsetisa.
  integer(c_int32_t), parameter :: instruction_set_sse4 = 0, instruction_set_avx2 = 1, instruction_set_avx512 = 2

  interface
    ! Run-time configuration (ZORTAVConfiguration.h)

    subroutine getblas(mode, reserved1, reserved2) bind(C, name='getblas')
      import :: c_int32_t
      integer(c_int32_t), intent(out) :: mode, reserved1, reserved2
    end subroutine getblas

    subroutine ehaldb(decision) bind(C, name='ehaldb')
      import :: c_int32_t
      integer(c_int32_t), intent(out) :: decision
    end subroutine ehaldb

    subroutine ehucpu(threads) bind(C, name='ehucpu')
      import :: c_int32_t
      integer(c_int32_t), intent(out) :: threads
    end subroutine ehucpu

    subroutine ehalmxc(words) bind(C, name='ehalmxc')
      import :: c_int32_t
      integer(c_int32_t), intent(out) :: words
    end subroutine ehalmxc

    subroutine ehumem(words) bind(C, name='ehumem')
      import :: c_int32_t
      integer(c_int32_t), intent(out) :: words
    end subroutine ehumem

    subroutine GetMaxSlaveMemory(words) bind(C, name='GetMaxSlaveMemory')
      import :: c_int32_t
      integer(c_int32_t), intent(out) :: words
    end subroutine GetMaxSlaveMemory

    subroutine getversionmkl_c(text, text_length) bind(C, name='getversionmkl')
      import :: c_char, c_int64_t
      character(kind=c_char), intent(out) :: text(*)
      integer(c_int64_t), value :: text_length
    end subroutine getversionmkl_c

    subroutine clrfpe() bind(C, name='clrfpe')
    end subroutine clrfpe

    ! Instruction-set levels (ZORTAVInstructionSet.h)

    subroutine ehgetisa(active, highest, reason) bind(C, name='ehgetisa')
      import :: c_int32_t
      integer(c_int32_t), intent(out) :: active, highest, reason
    end subroutine ehgetisa

    subroutine ehsetisa(level, status) bind(C, name='ehsetisa')
      import :: c_int32_t
      integer(c_int32_t), intent(in) :: level
      integer(c_int32_t), intent(out) :: status
    end subroutine ehsetisa

    function ehisanm(level) bind(C, name='ehisanm') result(outcome)
      import :: c_int32_t, c_ptr
      integer(c_int32_t), intent(in) :: level
      type(c_ptr) :: outcome
    end function ehisanm

    ! The listing (ZORTAVListing.h)

    subroutine ZORTAVTraceState(channel, state) bind(C, name='ZORTAVTraceState')
      import :: c_char, c_int32_t
      character(kind=c_char), intent(in) :: channel(*)
      integer(c_int32_t), value :: state
    end subroutine ZORTAVTraceState

    subroutine SetTavTraces() bind(C, name='SetTavTraces')
    end subroutine SetTavTraces

    subroutine ehprini(text, value) bind(C, name='ehprini')
      import :: c_char, c_int32_t
      character(kind=c_char), intent(in) :: text(*)
      integer(c_int32_t), intent(in) :: value
    end subroutine ehprini

    subroutine ehprinr(format, value) bind(C, name='ehprinr')
      import :: c_char, c_double
      character(kind=c_char), intent(in) :: format(*)
      real(c_double), intent(in) :: value
    end subroutine ehprinr

    subroutine ehprint(text) bind(C, name='ehprint')
      import :: c_char
      character(kind=c_char), intent(in) :: text(*)
    end subroutine ehprint

    function eyflsh() bind(C, name='eyflsh') result(outcome)
      import :: c_int32_t
      integer(c_int32_t) :: outcome
    end function eyflsh

    ! Error reports (ZORTAVErrorReporting.h)

    subroutine GetErrorLog(hook) bind(C, name='GetErrorLog')
      import :: c_funptr
      type(c_funptr), intent(out) :: hook
    end subroutine GetErrorLog

    subroutine SetErrorLog(hook) bind(C, name='SetErrorLog')
      import :: c_funptr
      type(c_funptr), value :: hook
    end subroutine SetErrorLog

    function ehrprog_c(parameter, text, flag, text_length) bind(C, name='ehrprog') result(outcome)
      import :: c_char, c_int32_t, c_int64_t
      integer(c_int32_t), intent(in) :: parameter
      character(kind=c_char), intent(in) :: text(*)
      integer(c_int32_t), intent(out) :: flag
      integer(c_int64_t), value :: text_length
      integer(c_int32_t) :: outcome
    end function ehrprog_c

    ! Dense vectors (ZORTAVDenseVectorKernels.h)

    subroutine e_dzero(n, x, incx) bind(C, name='e_dzero')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(inout) :: x(*)
      integer(c_int32_t), intent(in) :: incx
    end subroutine e_dzero

    subroutine e_izero(n, ix, incx) bind(C, name='e_izero')
      import :: c_int32_t
      integer(c_int32_t), intent(in) :: n
      integer(c_int32_t), intent(inout) :: ix(*)
      integer(c_int32_t), intent(in) :: incx
    end subroutine e_izero

    subroutine e_dcopy(n, x, incx, y, incy) bind(C, name='e_dcopy')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double), intent(inout) :: y(*)
      integer(c_int32_t), intent(in) :: incy
    end subroutine e_dcopy

    subroutine e_icopy(n, ix, incx, iy, incy) bind(C, name='e_icopy')
      import :: c_int32_t
      integer(c_int32_t), intent(in) :: n, ix(*), incx
      integer(c_int32_t), intent(inout) :: iy(*)
      integer(c_int32_t), intent(in) :: incy
    end subroutine e_icopy

    subroutine e_dscal(n, alpha, x, incx) bind(C, name='e_dscal')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: alpha
      real(c_double), intent(inout) :: x(*)
      integer(c_int32_t), intent(in) :: incx
    end subroutine e_dscal

    subroutine drscl(n, sa, x, incx) bind(C, name='drscl')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: sa
      real(c_double), intent(inout) :: x(*)
      integer(c_int32_t), intent(in) :: incx
    end subroutine drscl

    subroutine e_daxpy(n, alpha, x, incx, y, incy) bind(C, name='e_daxpy')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: alpha, x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double), intent(inout) :: y(*)
      integer(c_int32_t), intent(in) :: incy
    end subroutine e_daxpy

    subroutine e_dswap(n, x, incx, y, incy) bind(C, name='e_dswap')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(inout) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double), intent(inout) :: y(*)
      integer(c_int32_t), intent(in) :: incy
    end subroutine e_dswap

    function e_dasum(n, x, incx) bind(C, name='e_dasum') result(outcome)
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double) :: outcome
    end function e_dasum

    function damax(n, x, incx) bind(C, name='damax') result(outcome)
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double) :: outcome
    end function damax

    function e_idamax(n, x, incx) bind(C, name='e_idamax') result(outcome)
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      integer(c_int32_t) :: outcome
    end function e_idamax

    function e_dnrm2(n, x, incx) bind(C, name='e_dnrm2') result(outcome)
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double) :: outcome
    end function e_dnrm2

    subroutine e_drotg(a, b, c, s) bind(C, name='e_drotg')
      import :: c_double
      real(c_double), intent(inout) :: a, b
      real(c_double), intent(out) :: c, s
    end subroutine e_drotg

    ! Sparse vectors (ZORTAVSparseVectorKernels.h)

    subroutine e_daxpyi(n, alpha, x, indx, y) bind(C, name='e_daxpyi')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: alpha, x(*)
      integer(c_int32_t), intent(in) :: indx(*)
      real(c_double), intent(inout) :: y(*)
    end subroutine e_daxpyi

    function e_ddoti(n, x, indx, y) bind(C, name='e_ddoti') result(outcome)
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: indx(*)
      real(c_double), intent(in) :: y(*)
      real(c_double) :: outcome
    end function e_ddoti

    subroutine e_dgthr(n, y, x, indx) bind(C, name='e_dgthr')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: y(*)
      real(c_double), intent(inout) :: x(*)
      integer(c_int32_t), intent(in) :: indx(*)
    end subroutine e_dgthr

    subroutine e_dsctr(n, x, indx, y) bind(C, name='e_dsctr')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: indx(*)
      real(c_double), intent(inout) :: y(*)
    end subroutine e_dsctr

    ! Matrix-vector product (ZORTAVMatrixVectorProduct.h)

    subroutine eagemv_c(trans, m, n, alpha, a, lda, x, incx, beta, y, incy, trans_length) bind(C, name='eagemv')
      import :: c_char, c_double, c_int32_t, c_int64_t
      character(kind=c_char), intent(in) :: trans(*)
      integer(c_int32_t), intent(in) :: m, n
      real(c_double), intent(in) :: alpha, a(*)
      integer(c_int32_t), intent(in) :: lda
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double), intent(in) :: beta
      real(c_double), intent(inout) :: y(*)
      integer(c_int32_t), intent(in) :: incy
      integer(c_int64_t), value :: trans_length
    end subroutine eagemv_c

    subroutine dgemv_n(m, n, alpha, a, lda, x, incx, beta, y, incy) bind(C, name='dgemv_n')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: m, n
      real(c_double), intent(in) :: alpha, a(*)
      integer(c_int32_t), intent(in) :: lda
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double), intent(in) :: beta
      real(c_double), intent(inout) :: y(*)
      integer(c_int32_t), intent(in) :: incy
    end subroutine dgemv_n

    subroutine dgemv32_n(m, n, alpha, a, lda, x, incx, beta, y, incy) bind(C, name='dgemv32_n')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: m, n
      real(c_double), intent(in) :: alpha, a(*)
      integer(c_int32_t), intent(in) :: lda
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double), intent(in) :: beta
      real(c_double), intent(inout) :: y(*)
      integer(c_int32_t), intent(in) :: incy
    end subroutine dgemv32_n

    subroutine dgemv_t(m, n, alpha, a, lda, x, incx, beta, y, incy) bind(C, name='dgemv_t')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: m, n
      real(c_double), intent(in) :: alpha, a(*)
      integer(c_int32_t), intent(in) :: lda
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double), intent(in) :: beta
      real(c_double), intent(inout) :: y(*)
      integer(c_int32_t), intent(in) :: incy
    end subroutine dgemv_t

    subroutine dgemv32_t(m, n, alpha, a, lda, x, incx, beta, y, incy) bind(C, name='dgemv32_t')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: m, n
      real(c_double), intent(in) :: alpha, a(*)
      integer(c_int32_t), intent(in) :: lda
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double), intent(in) :: beta
      real(c_double), intent(inout) :: y(*)
      integer(c_int32_t), intent(in) :: incy
    end subroutine dgemv32_t

    subroutine dgemvf_c(trans, m, n, alpha, a, lda, x, incx, beta, y, incy, trans_length) bind(C, name='dgemvf')
      import :: c_char, c_double, c_int32_t, c_int64_t
      character(kind=c_char), intent(in) :: trans(*)
      integer(c_int32_t), intent(in) :: m, n
      real(c_double), intent(in) :: alpha, a(*)
      integer(c_int32_t), intent(in) :: lda
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double), intent(in) :: beta
      real(c_double), intent(inout) :: y(*)
      integer(c_int32_t), intent(in) :: incy
      integer(c_int64_t), value :: trans_length
    end subroutine dgemvf_c

    ! Packed solves (ZORTAVPackedSolves.h)

    subroutine e_dtpsv_c(uplo, trans, diag, n, ap, x, incx, uplo_length, trans_length, diag_length) bind(C, &
        name='e_dtpsv')
      import :: c_char, c_double, c_int32_t, c_int64_t
      character(kind=c_char), intent(in) :: uplo(*), trans(*), diag(*)
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: ap(*)
      real(c_double), intent(inout) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      integer(c_int64_t), value :: uplo_length, trans_length, diag_length
    end subroutine e_dtpsv_c

    subroutine e_dpptrs_c(uplo, n, nrhs, ap, b, ldb, info, uplo_length) bind(C, name='e_dpptrs')
      import :: c_char, c_double, c_int32_t, c_int64_t
      character(kind=c_char), intent(in) :: uplo(*)
      integer(c_int32_t), intent(in) :: n, nrhs
      real(c_double), intent(in) :: ap(*)
      real(c_double), intent(inout) :: b(*)
      integer(c_int32_t), intent(in) :: ldb
      integer(c_int32_t), intent(inout) :: info
      integer(c_int64_t), value :: uplo_length
    end subroutine e_dpptrs_c

    subroutine dpptrs_2_c(uplo, n, nrhs, ap, b, ldb, info, uplo_length) bind(C, name='dpptrs_2')
      import :: c_char, c_double, c_int32_t, c_int64_t
      character(kind=c_char), intent(in) :: uplo(*)
      integer(c_int32_t), intent(in) :: n, nrhs
      real(c_double), intent(in) :: ap(*)
      real(c_double), intent(inout) :: b(*)
      integer(c_int32_t), intent(in) :: ldb
      integer(c_int32_t), intent(inout) :: info
      integer(c_int64_t), value :: uplo_length
    end subroutine dpptrs_2_c

    ! Matrix-matrix product (ZORTAVMatrixProduct.h)

    subroutine eagemm_c(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, transa_length, &
        transb_length) bind(C, name='eagemm')
      import :: c_char, c_double, c_int32_t, c_int64_t
      character(kind=c_char), intent(in) :: transa(*), transb(*)
      integer(c_int32_t), intent(in) :: m, n, k
      real(c_double), intent(in) :: alpha, a(*)
      integer(c_int32_t), intent(in) :: lda
      real(c_double), intent(in) :: b(*)
      integer(c_int32_t), intent(in) :: ldb
      real(c_double), intent(in) :: beta
      real(c_double), intent(inout) :: c(*)
      integer(c_int32_t), intent(in) :: ldc
      integer(c_int64_t), value :: transa_length, transb_length
    end subroutine eagemm_c

    function prdgemm_c(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, transa_length, &
        transb_length) bind(C, name='prdgemm') result(outcome)
      import :: c_char, c_double, c_int32_t, c_int64_t
      character(kind=c_char), intent(in) :: transa(*), transb(*)
      integer(c_int32_t), intent(in) :: m, n, k
      real(c_double), intent(in) :: alpha, a(*)
      integer(c_int32_t), intent(in) :: lda
      real(c_double), intent(in) :: b(*)
      integer(c_int32_t), intent(in) :: ldb
      real(c_double), intent(in) :: beta
      real(c_double), intent(inout) :: c(*)
      integer(c_int32_t), intent(in) :: ldc
      integer(c_int64_t), value :: transa_length, transb_length
      integer(c_int32_t) :: outcome
    end function prdgemm_c

    ! Sparse product, clearing by type (ZORTAVSparseKernels.h)

    subroutine eaxmvm(mode, nnz, nrows, n, nvec, colidx, rowptr, values, x, y) bind(C, name='eaxmvm')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: mode, nnz, nrows, n, nvec, colidx(*), rowptr(*)
      real(c_double), intent(in) :: values(*), x(*)
      real(c_double), intent(inout) :: y(*)
    end subroutine eaxmvm

    subroutine eaxraz(type, array, count) bind(C, name='eaxraz')
      import :: c_int32_t
      integer(c_int32_t), intent(in) :: type
      type(*), intent(inout) :: array(*)
      integer(c_int32_t), intent(in) :: count
    end subroutine eaxraz

    subroutine eaxmac_c(array, count, character, character_length) bind(C, name='eaxmac')
      import :: c_char, c_int32_t, c_int64_t
      type(*), intent(inout) :: array(*)
      integer(c_int32_t), intent(in) :: count
      character(kind=c_char), intent(in) :: character(*)
      integer(c_int64_t), value :: character_length
    end subroutine eaxmac_c

    ! Sparse patterns (ZORTAVSparsePatterns.h)

    subroutine eaunle(ncol, nrow, reserved, ptr_a, idx_a, ptr_t, idx_t) bind(C, name='eaunle')
      import :: c_int32_t
      integer(c_int32_t), intent(in) :: ncol, nrow, reserved, ptr_a(*), idx_a(*)
      integer(c_int32_t), intent(inout) :: ptr_t(*), idx_t(*)
    end subroutine eaunle

    subroutine eaupnn(n, nrow, reserved, ptr_a, idx_a, ptr_t, idx_t, mark, ptr_p, total) bind(C, name='eaupnn')
      import :: c_int32_t
      integer(c_int32_t), intent(in) :: n, nrow, reserved, ptr_a(*), idx_a(*)
      integer(c_int32_t), intent(inout) :: ptr_t(*), idx_t(*), mark(*), ptr_p(*)
      integer(c_int32_t), intent(out) :: total
    end subroutine eaupnn

    subroutine eaunln(n, reserved1, reserved2, ptr_a, idx_a, ptr_t, idx_t, list, idx_p) bind(C, name='eaunln')
      import :: c_int32_t
      integer(c_int32_t), intent(in) :: n, reserved1, reserved2, ptr_a(*), idx_a(*), ptr_t(*), idx_t(*)
      integer(c_int32_t), intent(inout) :: list(*), idx_p(*)
    end subroutine eaunln

    subroutine eaupne(q, m, p, nrows, row_of, ptr) bind(C, name='eaupne')
      import :: c_int32_t
      integer(c_int32_t), intent(in) :: q, m, p, nrows, row_of(*)
      integer(c_int32_t), intent(inout) :: ptr(*)
    end subroutine eaupne

    ! Matrix utilities (ZORTAVMatrixUtilities.h)

    function eaxscl(n, x, incx, y, incy) bind(C, name='eaxscl') result(outcome)
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: x(*)
      integer(c_int32_t), intent(in) :: incx
      real(c_double), intent(in) :: y(*)
      integer(c_int32_t), intent(in) :: incy
      real(c_double) :: outcome
    end function eaxscl

    subroutine eaxsort(a, width, count, key, work) bind(C, name='eaxsort')
      import :: c_int32_t
      integer(c_int32_t), intent(inout) :: a(*)
      integer(c_int32_t), intent(in) :: width, count, key
      integer(c_int32_t), intent(inout) :: work(*)
    end subroutine eaxsort

    subroutine eacort(reserved, n, f, b) bind(C, name='eacort')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: reserved, n
      real(c_double), intent(in) :: f(*)
      real(c_double), intent(inout) :: b(*)
    end subroutine eacort

    subroutine eaxrnd(seed, r) bind(C, name='eaxrnd')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(inout) :: seed
      real(c_double), intent(out) :: r
    end subroutine eaxrnd

    subroutine eaxmmp(m, k, n, a, b, c) bind(C, name='eaxmmp')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: m, k, n
      real(c_double), intent(in) :: a(*), b(*)
      real(c_double), intent(inout) :: c(*)
    end subroutine eaxmmp

    subroutine ebhpap(n, p, d, w, r) bind(C, name='ebhpap')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: p(*), d(*)
      real(c_double), intent(inout) :: w(*), r(*)
    end subroutine ebhpap

    subroutine eaxcpy(type, count, src, dst) bind(C, name='eaxcpy')
      import :: c_int32_t
      integer(c_int32_t), intent(in) :: type, count
      type(*), intent(in) :: src(*)
      type(*), intent(inout) :: dst(*)
    end subroutine eaxcpy

    ! Factorization (ZORTAVFactorization.h)

    function eaxfch(n, n1, n2, tol, a, ierr, piv) bind(C, name='eaxfch') result(outcome)
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n, n1, n2
      real(c_double), intent(in) :: tol
      real(c_double), intent(inout) :: a(*)
      integer(c_int32_t), intent(out) :: ierr
      real(c_double), intent(inout) :: piv
      integer(c_int32_t) :: outcome
    end function eaxfch

    subroutine eaxfch2(n, n1, n2, tol, a, ierr, piv) bind(C, name='eaxfch2')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n, n1, n2
      real(c_double), intent(in) :: tol
      real(c_double), intent(inout) :: a(*)
      integer(c_int32_t), intent(out) :: ierr
      real(c_double), intent(inout) :: piv
    end subroutine eaxfch2

    function easlff_nt(n, m, a, rmin, d0, tolp, tolr, neq, npiv, flop1, flop2, istat) bind(C, &
        name='easlff_nt') result(outcome)
      import :: c_double, c_float, c_int32_t
      integer(c_int32_t), intent(in) :: n, m
      real(c_double), intent(inout) :: a(*), rmin
      real(c_double), intent(in) :: d0(*), tolp, tolr
      integer(c_int32_t), intent(inout) :: neq, npiv
      real(c_float), intent(inout) :: flop1, flop2
      integer(c_int32_t), intent(out) :: istat
      integer(c_int32_t) :: outcome
    end function easlff_nt

    ! Eigen-solver (ZORTAVEigenSolver.h)

    function eaxeig(n, ord, a, d, v, e, ierr) bind(C, name='eaxeig') result(outcome)
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n, ord
      real(c_double), intent(inout) :: a(*), d(*), v(*), e(*)
      integer(c_int32_t), intent(inout) :: ierr
      integer(c_int32_t) :: outcome
    end function eaxeig

    subroutine eaxetr(n, a, d, e) bind(C, name='eaxetr')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(inout) :: a(*), d(*), e(*)
    end subroutine eaxetr

    function eaxeql(n, d, e, v, ierr) bind(C, name='eaxeql') result(outcome)
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(inout) :: d(*), e(*), v(*)
      integer(c_int32_t), intent(inout) :: ierr
      integer(c_int32_t) :: outcome
    end function eaxeql

    subroutine eaxeor(ord, n, d, v) bind(C, name='eaxeor')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: ord, n
      real(c_double), intent(inout) :: d(*), v(*)
    end subroutine eaxeor

    subroutine eaxevp(n, a, v) bind(C, name='eaxevp')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(in) :: a(*)
      real(c_double), intent(inout) :: v(*)
    end subroutine eaxevp

    ! Inversion (ZORTAVInversion.h)

    subroutine eaxinv(mode, lda, n, ipiv, ierr, a) bind(C, name='eaxinv')
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: mode, lda, n
      integer(c_int32_t), intent(inout) :: ipiv(*), ierr
      real(c_double), intent(inout) :: a(*)
    end subroutine eaxinv

    function eaxinvs(n, a, d, v, w, r, ierr) bind(C, name='eaxinvs') result(outcome)
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n
      real(c_double), intent(inout) :: a(*), d(*), v(*), w(*), r(*)
      integer(c_int32_t), intent(out) :: ierr
      integer(c_int32_t) :: outcome
    end function eaxinvs

    function eaxrmc3(n, m, a, b, ldb, d, v, w, r, t, s, ierr) bind(C, name='eaxrmc3') result(outcome)
      import :: c_double, c_int32_t
      integer(c_int32_t), intent(in) :: n, m
      real(c_double), intent(inout) :: a(*)
      real(c_double), intent(in) :: b(*)
      integer(c_int32_t), intent(in) :: ldb
      real(c_double), intent(inout) :: d(*), v(*), w(*), r(*), t(*), s(*)
      integer(c_int32_t), intent(out) :: ierr
      integer(c_int32_t) :: outcome
    end function eaxrmc3
  end interface

contains

  subroutine getversionmkl(text)
    character(kind=c_char, len=*), intent(out) :: text
    call getversionmkl_c(text, len(text, c_int64_t))
  end subroutine getversionmkl

  function ehrprog(parameter, text, flag) result(outcome)
    integer(c_int32_t), intent(in) :: parameter
    character(kind=c_char, len=*), intent(in) :: text
    integer(c_int32_t), intent(out) :: flag
    integer(c_int32_t) :: outcome
    character(kind=c_char, len=80) :: filled_up
    filled_up = text
    outcome = ehrprog_c(parameter, filled_up, flag, len(filled_up, c_int64_t))
  end function ehrprog

  subroutine eagemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy)
    character(kind=c_char, len=*), intent(in) :: trans
    integer(c_int32_t), intent(in) :: m, n
    real(c_double), intent(in) :: alpha, a(*)
    integer(c_int32_t), intent(in) :: lda
    real(c_double), intent(in) :: x(*)
    integer(c_int32_t), intent(in) :: incx
    real(c_double), intent(in) :: beta
    real(c_double), intent(inout) :: y(*)
    integer(c_int32_t), intent(in) :: incy
    call eagemv_c(trans, m, n, alpha, a, lda, x, incx, beta, y, incy, len(trans, c_int64_t))
  end subroutine eagemv

  subroutine dgemvf(trans, m, n, alpha, a, lda, x, incx, beta, y, incy)
    character(kind=c_char, len=*), intent(in) :: trans
    integer(c_int32_t), intent(in) :: m, n
    real(c_double), intent(in) :: alpha, a(*)
    integer(c_int32_t), intent(in) :: lda
    real(c_double), intent(in) :: x(*)
    integer(c_int32_t), intent(in) :: incx
    real(c_double), intent(in) :: beta
    real(c_double), intent(inout) :: y(*)
    integer(c_int32_t), intent(in) :: incy
    call dgemvf_c(trans, m, n, alpha, a, lda, x, incx, beta, y, incy, len(trans, c_int64_t))
  end subroutine dgemvf

  subroutine e_dtpsv(uplo, trans, diag, n, ap, x, incx)
    character(kind=c_char, len=*), intent(in) :: uplo, trans, diag
    integer(c_int32_t), intent(in) :: n
    real(c_double), intent(in) :: ap(*)
    real(c_double), intent(inout) :: x(*)
    integer(c_int32_t), intent(in) :: incx
    call e_dtpsv_c(uplo, trans, diag, n, ap, x, incx, len(uplo, c_int64_t), len(trans, c_int64_t), len(diag, c_int64_t))
  end subroutine e_dtpsv

  subroutine e_dpptrs(uplo, n, nrhs, ap, b, ldb, info)
    character(kind=c_char, len=*), intent(in) :: uplo
    integer(c_int32_t), intent(in) :: n, nrhs
    real(c_double), intent(in) :: ap(*)
    real(c_double), intent(inout) :: b(*)
    integer(c_int32_t), intent(in) :: ldb
    integer(c_int32_t), intent(inout) :: info
    call e_dpptrs_c(uplo, n, nrhs, ap, b, ldb, info, len(uplo, c_int64_t))
  end subroutine e_dpptrs

  subroutine dpptrs_2(uplo, n, nrhs, ap, b, ldb, info)
    character(kind=c_char, len=*), intent(in) :: uplo
    integer(c_int32_t), intent(in) :: n, nrhs
    real(c_double), intent(in) :: ap(*)
    real(c_double), intent(inout) :: b(*)
    integer(c_int32_t), intent(in) :: ldb
    integer(c_int32_t), intent(inout) :: info
    call dpptrs_2_c(uplo, n, nrhs, ap, b, ldb, info, len(uplo, c_int64_t))
  end subroutine dpptrs_2

  subroutine eagemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc)
    character(kind=c_char, len=*), intent(in) :: transa, transb
    integer(c_int32_t), intent(in) :: m, n, k
    real(c_double), intent(in) :: alpha, a(*)
    integer(c_int32_t), intent(in) :: lda
    real(c_double), intent(in) :: b(*)
    integer(c_int32_t), intent(in) :: ldb
    real(c_double), intent(in) :: beta
    real(c_double), intent(inout) :: c(*)
    integer(c_int32_t), intent(in) :: ldc
    call eagemm_c(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, len(transa, c_int64_t), len(transb, &
        c_int64_t))
  end subroutine eagemm

  function prdgemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc) result(outcome)
    character(kind=c_char, len=*), intent(in) :: transa, transb
    integer(c_int32_t), intent(in) :: m, n, k
    real(c_double), intent(in) :: alpha, a(*)
    integer(c_int32_t), intent(in) :: lda
    real(c_double), intent(in) :: b(*)
    integer(c_int32_t), intent(in) :: ldb
    real(c_double), intent(in) :: beta
    real(c_double), intent(inout) :: c(*)
    integer(c_int32_t), intent(in) :: ldc
    integer(c_int32_t) :: outcome
    outcome = prdgemm_c(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, len(transa, c_int64_t), &
        len(transb, c_int64_t))
  end function prdgemm

  subroutine eaxmac(array, count, character)
    type(*), intent(inout) :: array(*)
    integer(c_int32_t), intent(in) :: count
    character(kind=c_char, len=*), intent(in) :: character
    call eaxmac_c(array, count, character, len(character, c_int64_t))
  end subroutine eaxmac

end module zortav_math_kernel
