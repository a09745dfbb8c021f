! The special functions from Fortran: exact values and identities that tie them together.
program special_test
  use zorvikrt
  use zorvikrt_special
  implicit none
  type(real16) :: x(3), pi
  integer :: failures = 0
  x = [real16('0.3'), real16('1.7'), real16(4)]
  pi = 4 * atan(real16(1))
  call check(all(abs(erf(x) + erfc(x) - 1) < 1d-30) .and. erf(0.5d0) > 0.52d0, 'erf, erfc')
  call check(all(abs(erfc_scaled(x) / exp(x**2) / erfc(x) - 1) < 1d-28), 'erfc_scaled')
  call check(abs(gamma(real16(5)) - 24) < 1d-28 .and. all(abs(exp(log_gamma(x)) / gamma(x) - 1) < 1d-29) &
      .and. abs(gamma(real16(0.5d0))**2 - pi) < 1d-29, 'gamma, log_gamma')
  call check(all(abs(bessel_j1(x) * bessel_y0(x) - bessel_j0(x) * bessel_y1(x) - 2 / (pi * x)) < 1d-28), &
      'the Wronskian of the Bessel functions')
  call check(all(abs(bessel_jn(0, 2, x(2)) - [bessel_j0(x(2)), bessel_j1(x(2)), bessel_jn(2, x(2))]) < 1d-30) &
      .and. all(abs(bessel_yn(1, 3, x(3)) - [bessel_y1(x(3)), bessel_yn(2, x(3)), bessel_yn(3, x(3))]) < 1d-30) &
      .and. size(bessel_jn(2, 1, x(1))) == 0, 'orders')
  call check(all(abs(x * (bessel_jn(0, x) + bessel_jn(2, x)) - 2 * bessel_j1(x)) < 1d-29), 'the recurrence')
  if (failures > 0) stop 1

contains

  subroutine check(right, what)
    logical, intent(in) :: right
    character(*), intent(in) :: what
    if (right) return
    failures = failures + 1
    print '(2a)', 'failed: ', what
  end subroutine check
end program special_test
