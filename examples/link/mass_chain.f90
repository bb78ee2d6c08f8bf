! SPDX-License-Identifier: MIT
!
! Natural frequencies of equal masses between springs, both ends fixed: the eigenvalues of K/m by eaxeig, beside the
! formula f(j) = sqrt(k/m)/pi * sin(j*pi / (2*(n + 1))). The modes are orthogonal: V'*V = I, by eagemm.
!
!   gfortran $(pkg-config --variable=fortran_module ZORTAVMathKernel) mass_chain.f90 $(pkg-config --libs ZORTAVMathKernel)
program mass_chain
  use, intrinsic :: iso_c_binding, only: c_double, c_int32_t
  use zortav_math_kernel
  implicit none
  integer(c_int32_t), parameter :: n = 6, ascending = 1
  real(c_double), parameter :: mass = 2d0, spring = 8d3, pi = acos(-1d0)  ! kg, N/m
  real(c_double) :: a(n*(n + 1)/2), square(n), mode(n, n), work(n), gram(n, n), exact, error
  integer(c_int32_t) :: i, failed

  a = 0d0  ! the lower triangle of K/m, row after row
  do i = 1, n
    a(i*(i + 1)/2) = 2*spring/mass
  end do
  do i = 2, n
    a(i*(i + 1)/2 - 1) = -spring/mass
  end do
  if (eaxeig(n, ascending, a, square, mode, work, failed) /= 0) error stop 'the iteration did not converge'

  error = 0d0
  print '(a)', '  mode   frequency [Hz]     formula [Hz]'
  do i = 1, n
    exact = sqrt(spring/mass)/pi*sin(i*pi/(2*(n + 1)))
    print '(i6, 2f17.9)', i, sqrt(square(i))/(2*pi), exact
    error = max(error, abs(sqrt(square(i))/(2*pi)/exact - 1))
  end do

  call eagemm('T', 'N', n, n, n, 1d0, mode, n, mode, n, 0d0, gram, n)
  do i = 1, n
    gram(i, i) = gram(i, i) - 1
  end do
  print '(a, es8.1)', 'largest element of V''V - I:', maxval(abs(gram))
  if (error > 1d-12 .or. maxval(abs(gram)) > 1d-13) error stop 'the modes are wrong'
end program mass_chain
