! SPDX-License-Identifier: MIT
!
! Calls whose argument lists differ between the languages: option letters, texts, arrays of any type, C pointers.
program fortran_calls
  use, intrinsic :: iso_c_binding
  use zortav_math_kernel
  implicit none
  integer(c_int32_t), parameter :: n = 3, one = 1, two = 2
  real(c_double), parameter :: a(n, n) = reshape([2d0, 0d0, 0d0, 1d0, 4d0, 0d0, 3d0, 1d0, 8d0], [n, n])
  real(c_double), parameter :: upper(6) = [2d0, 1d0, 4d0, 3d0, 1d0, 8d0]
  real(c_double) :: x(n), y(n), b(n, 2)
  integer(c_int32_t) :: status, levels(3), copied(2)
  integer(c_int16_t) :: short(4)
  character(kind=c_char) :: stars(3)
  character(kind=c_char, len=1) :: version
  character(kind=c_char), pointer :: level_name(:)
  type(c_funptr) :: hook

  x = [1d0, 2d0, 3d0]
  y = 0d0
  call eagemv('N', n, n, 1d0, a, n, x, one, 0d0, y, one)
  call check(all(y == matmul(a, x)), 'eagemv')
  call dgemvf('T', n, n, 1d0, a, n, x, one, 0d0, y, one)
  call check(all(y == matmul(transpose(a), x)), 'dgemvf')
  call e_dtpsv('U', 'T', 'N', n, upper, y, one)
  call check(all(y == x), 'e_dtpsv')
  b(:, 1) = matmul(matmul(transpose(a), a), x)
  b(:, 2) = 2*b(:, 1)
  call e_dpptrs('U', n, two, upper, b, n, status)
  call check(maxval(abs(b(:, 1) - x)) < 1d-12 .and. all(b(:, 2) == 2*b(:, 1)), 'e_dpptrs')
  status = prdgemm('N', 'N', n, one, n, 1d0, a, n, x, n, 0d0, y, n)
  call check(status == 0 .and. all(y == matmul(a, x)), 'prdgemm')

  short = 7_c_int16_t
  call eaxraz(two, short, 3_c_int32_t)
  call check(all(short == [0_c_int16_t, 0_c_int16_t, 0_c_int16_t, 7_c_int16_t]), 'eaxraz')
  call eaxcpy(3_c_int32_t, two, [5_c_int32_t, 6_c_int32_t], copied)
  call check(all(copied == [5, 6]), 'eaxcpy')
  stars = ['a', 'b', 'c']
  call eaxmac(stars, two, '*')
  call check(all(stars == ['*', '*', 'c']), 'eaxmac')

  version = 'x'
  call getversionmkl(version)
  call check(version == c_null_char, 'getversionmkl')
  call ehgetisa(levels(1), levels(2), levels(3))
  call c_f_pointer(ehisanm(levels(1)), level_name, [3])
  call check(all(level_name == ['S', 'S', 'E']) .or. all(level_name == ['A', 'V', 'X']), 'ehisanm')
  call GetErrorLog(hook)
  call check(.not. c_associated(hook), 'GetErrorLog')
  call ZORTAVTraceState('TAVPrint'//c_null_char, 0_c_int32_t)
  status = 0
  call check(ehrprog(42_c_int32_t, 'shorter than eighty characters', status) == 1 .and. status == 1, 'ehrprog')

contains

  subroutine check(holds, entry)
    logical, intent(in) :: holds
    character(len=*), intent(in) :: entry
    if (.not. holds) then
      print '(2a)', 'wrong through its Fortran interface: ', entry
      error stop
    end if
  end subroutine check
end program fortran_calls
